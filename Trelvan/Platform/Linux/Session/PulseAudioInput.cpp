#include "Platform/Linux/Session/PulseAudioInput.hpp"

#include "Utilities/Logger.hpp"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace trelvan {

namespace {

/// The wait before the next look for a server doubles from the first to the last, so that a computer without
/// one is left in peace.
constexpr pa_usec_t firstWait = PA_USEC_PER_SEC;
constexpr pa_usec_t maxWait = 16 * PA_USEC_PER_SEC;

/// How long the first read waits for the server's first word; it comes within a few milliseconds.
constexpr std::chrono::milliseconds firstWordTimeout{200};

/// What was last told of the default source.
struct Source {
    AudioInput::Device index = 0;
    bool isMuted = false;
    /// 0 to 1, and beyond for an amplified channel.
    std::vector<float> volumes;
};

void letGo(pa_operation* operation) {
    if (operation != nullptr) pa_operation_unref(operation);
}

}  // namespace

/// The conversation with the server. All functions but the first three run on the loop's thread, or with its
/// lock held.
class PulseAudioInput::Connection {
  public:
    Connection() : loop_(pa_threaded_mainloop_new()), wasRead_(loop_ == nullptr) {
        if (loop_ == nullptr) return;
        pa_threaded_mainloop_set_name(loop_, "trelvan-audio");
        connect();
        if (pa_threaded_mainloop_start(loop_) == 0) return;
        wasRead_ = true;
        AppLogger.warning("No se pudo iniciar la escucha del servidor de sonido");
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() {
        if (loop_ == nullptr) return;
        pa_threaded_mainloop_stop(loop_);
        disconnect();
        cancelRetry();
        pa_threaded_mainloop_free(loop_);
    }

    [[nodiscard]] std::optional<Source> source() {
        std::unique_lock lock(mutex_);
        // Only once: a server that is silent for so long is not waited for again.
        if (!std::exchange(wasRead_, true)) {
            firstWord_.wait_for(lock, firstWordTimeout, [this] { return hasWord_; });
        }
        return source_;
    }

  private:
    void connect() {
        context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "Trelvan");
        if (context_ == nullptr) {
            forgetSource();
            return retryLater();
        }
        pa_context_set_state_callback(
            context_, [](pa_context*, void* self) { static_cast<Connection*>(self)->stateChanged(); }, this);
        pa_context_set_subscribe_callback(
            context_,
            [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
                static_cast<Connection*>(self)->askServer();
            },
            this);
        // Whoever only looks does not start a server.
        if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
            forgetSource();
            retryLater();
        }
    }

    void disconnect() {
        if (context_ == nullptr) return;
        pa_context_set_state_callback(context_, nullptr, nullptr);
        pa_context_set_subscribe_callback(context_, nullptr, nullptr);
        // Pending questions are dropped with it, unanswered.
        pa_context_disconnect(context_);
        pa_context_unref(context_);
        context_ = nullptr;
    }

    void stateChanged() {
        switch (pa_context_get_state(context_)) {
            case PA_CONTEXT_READY: {
                wait_ = firstWait;
                constexpr auto wanted =
                    static_cast<pa_subscription_mask_t>(static_cast<unsigned>(PA_SUBSCRIPTION_MASK_SERVER) |
                                                        static_cast<unsigned>(PA_SUBSCRIPTION_MASK_SOURCE));
                letGo(pa_context_subscribe(context_, wanted, nullptr, nullptr));
                askServer();
                break;
            }
            case PA_CONTEXT_FAILED:
            case PA_CONTEXT_TERMINATED:
                forgetSource();
                retryLater();
                break;
            default:
                break;
        }
    }

    /// Asks which source is the default one, and then for that source.
    void askServer() {
        letGo(pa_context_get_server_info(
            context_,
            [](pa_context*, const pa_server_info* server, void* self) {
                auto* connection = static_cast<Connection*>(self);
                if (server == nullptr || server->default_source_name == nullptr) {
                    connection->forgetSource();
                } else {
                    connection->askSource(server->default_source_name);
                }
            },
            this));
    }

    void askSource(const char* name) {
        letGo(pa_context_get_source_info_by_name(
            context_, name,
            [](pa_context*, const pa_source_info* source, int end, void* self) {
                auto* connection = static_cast<Connection*>(self);
                if (end < 0) connection->forgetSource();
                if (end == 0 && source != nullptr) connection->keepSource(*source);
            },
            this));
    }

    void keepSource(const pa_source_info& told) {
        if (told.monitor_of_sink != PA_INVALID_INDEX) return forgetSource();
        Source source{.index = told.index, .isMuted = told.mute != 0, .volumes = {}};
        for (unsigned channel = 0; channel < told.volume.channels; ++channel) {
            source.volumes.push_back(static_cast<float>(told.volume.values[channel]) /
                                     static_cast<float>(PA_VOLUME_NORM));
        }
        setSource(std::move(source));
    }

    void forgetSource() { setSource(std::nullopt); }

    void setSource(std::optional<Source> source) {
        {
            const std::lock_guard lock(mutex_);
            source_ = std::move(source);
            hasWord_ = true;
        }
        firstWord_.notify_all();
    }

    void retryLater() {
        cancelRetry();
        auto* api = pa_threaded_mainloop_get_api(loop_);
        timeval when{};
        pa_timeval_add(pa_gettimeofday(&when), wait_);
        wait_ = std::min(2 * wait_, maxWait);
        retry_ = api->time_new(
            api, &when,
            [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
                auto* connection = static_cast<Connection*>(self);
                connection->cancelRetry();
                connection->disconnect();
                connection->connect();
            },
            this);
    }

    void cancelRetry() {
        if (retry_ == nullptr) return;
        pa_threaded_mainloop_get_api(loop_)->time_free(retry_);
        retry_ = nullptr;
    }

    pa_threaded_mainloop* loop_;
    pa_context* context_ = nullptr;
    pa_time_event* retry_ = nullptr;
    pa_usec_t wait_ = firstWait;
    std::mutex mutex_;
    std::condition_variable firstWord_;
    std::optional<Source> source_;
    /// Whether it is known what there is, or that there is nothing.
    bool hasWord_ = false;
    bool wasRead_;
};

PulseAudioInput::PulseAudioInput() : connection_(std::make_unique<Connection>()) {}

PulseAudioInput::~PulseAudioInput() = default;

std::optional<AudioInput::Device> PulseAudioInput::defaultInputDevice() {
    const auto source = connection_->source();
    return source ? std::optional(source->index) : std::nullopt;
}

std::optional<std::uint32_t> PulseAudioInput::mute(Device device, std::uint32_t element) {
    const auto source = connection_->source();
    if (!source || source->index != device || element != 0) return std::nullopt;
    return source->isMuted ? 1 : 0;
}

std::optional<float> PulseAudioInput::volume(Device device, std::uint32_t element) {
    const auto source = connection_->source();
    if (!source || source->index != device || source->volumes.empty()) return std::nullopt;
    if (element == 0) return *std::ranges::max_element(source->volumes);
    if (element > 2 || element > source->volumes.size()) return std::nullopt;
    return source->volumes[element - 1];
}

}  // namespace trelvan
