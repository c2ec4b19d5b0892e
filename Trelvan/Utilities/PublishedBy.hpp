#pragma once

#include "Utilities/Published.hpp"

namespace trelvan {

/// A published value that everybody may read and observe, but that only its owner changes.
///
/// One thread only (the main thread), as `Published`.
template <typename T, typename Owner>
class PublishedBy : private Published<T> {
  public:
    using typename Published<T>::Observer;
    using Published<T>::get;
    using Published<T>::observe;
    using Published<T>::operator->;
    operator const T&() const { return get(); }  // NOLINT(google-explicit-constructor): reads like the value

  private:
    friend Owner;
    using Published<T>::operator=;
    using Published<T>::update;
};

}  // namespace trelvan
