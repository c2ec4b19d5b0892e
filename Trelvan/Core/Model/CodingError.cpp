#include "Core/Model/CodingError.hpp"

namespace trelvan {

std::string CodingError::text() const {
    if (position) {
        return "line " + std::to_string(position->line) + ", column " + std::to_string(position->column) +
               ": " + problem;
    }
    return path.empty() ? problem : path + ": " + problem;
}

CodingError CodingError::inside(std::string_view key) && {
    if (!path.empty() && path.front() != '[') path.insert(0, 1, '.');
    path.insert(0, key);
    return std::move(*this);
}

CodingError CodingError::inside(std::size_t index) && {
    if (!path.empty() && path.front() != '[') path.insert(0, 1, '.');
    path.insert(0, "[" + std::to_string(index) + "]");
    return std::move(*this);
}

}  // namespace trelvan
