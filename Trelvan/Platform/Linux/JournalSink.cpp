#include "Platform/Linux/JournalSink.hpp"

#ifdef TRELVAN_JOURNAL
#include <sys/uio.h>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <array>
#endif

#include "Utilities/Text.hpp"

namespace trelvan {

#ifdef TRELVAN_JOURNAL

namespace {

int priorityOf(LogLevel level) {
    switch (level) {
        case LogLevel::debug:
            return LOG_DEBUG;
        case LogLevel::info:
            return LOG_INFO;
        case LogLevel::warning:
            return LOG_WARNING;
        case LogLevel::error:
            return LOG_ERR;
    }
    return LOG_INFO;
}

iovec field(std::string_view text) {
    return {const_cast<char*>(text.data()), text.size()};
}

}  // namespace

JournalSink::JournalSink() : present_(access("/run/systemd/journal/socket", W_OK) == 0) {}

void JournalSink::write(const LogRecord& record) {
    if (!present_) return;
    const ShortText message("MESSAGE=", record.message);
    const ShortText priority("PRIORITY=", priorityOf(record.level));
    const std::array fields{field(message.view()), field(priority.view()),
                            field("SUBSYSTEM=com.yourname.Trelvan"), field("SYSLOG_IDENTIFIER=trelvan")};
    sd_journal_sendv(fields.data(), static_cast<int>(fields.size()));
}

#else

JournalSink::JournalSink() = default;

void JournalSink::write(const LogRecord& /*record*/) {
    (void)present_;
}

#endif

}  // namespace trelvan
