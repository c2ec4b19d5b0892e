#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace trelvan {

/// Runs a program to its end without waiting for it; calls `otherwise` when it cannot be started, crashes or
/// ends with another status than 0. Main thread.
void runProgram(const QString& program, const QStringList& arguments, const std::function<void()>& otherwise);

}  // namespace trelvan
