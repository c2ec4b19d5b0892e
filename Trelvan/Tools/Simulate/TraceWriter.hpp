#pragma once

#include "Core/MappingExplanation.hpp"
#include "Platform/Simulated/Trace.hpp"
#include "Tools/Simulate/JsonLine.hpp"

#include <functional>
#include <string_view>

namespace trelvan {

/// Turns what leaves the program on the simulated desktop into trace lines, one JSON object each.
class TraceWriter {
  public:
    /// Takes each line, its line break included, the moment it is made.
    using Output = std::function<void(std::string_view line)>;

    explicit TraceWriter(Output output) : output_(std::move(output)) {}

    void write(const TraceEntry& entry);
    /// What an operation returned, as JSON.
    void writeResult(Seconds at, std::string_view operation, std::string_view json);
    void writeError(Seconds at, std::string_view operation, std::string_view error);
    void writeExplanation(Seconds at, const MappingExplanation& explanation);
    /// A part of the state, as JSON.
    void writeState(Seconds at, std::string_view what, std::string_view json);

  private:
    void begin(Seconds at, std::string_view kind);
    void add(const trace::Event& event);
    void add(const trace::PostedKey& key);
    void add(const trace::PostedMouse& mouse);
    void add(const trace::PostedMedia& media);
    void add(const trace::Opened& opened);
    void add(const trace::Script& script);
    void add(const trace::Logged& logged);
    void add(const trace::Prompted& prompted);
    void add(const trace::Notification& notification);
    void add(const trace::Menu& menu);
    void add(const trace::View& view);

    Output output_;
    JsonLine line_;
};

}  // namespace trelvan
