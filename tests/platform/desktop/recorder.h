// A window that notes what it receives and can be told to answer.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/device_context.h"
#include "platform/desktop/native_window.h"
#include "platform/desktop/test_input.h"
#include "support/window_test.h"

namespace jotlet {

class Recorder {
public:
    struct Options {
        std::uint32_t style = 0;
        Rect bounds = Rect::At(0, 0, 100, 100);
        std::uint32_t classStyle = kClassSaveBits;
        Background background = Background::White;
        WindowHandle parent = 0;
        bool show = true;
    };
    using Answer = std::optional<MessageParam>;
    using Handler = std::function<Answer(const WndMessage&)>;

    explicit Recorder(const Options& options, Handler handler = {}) : answer(std::move(handler))
    {
        const std::string name = "Recorder" + std::to_string(options.classStyle) + "-" +
                                 std::to_string(static_cast<int>(options.background));
        RegisterWindowClass(
            {.style = options.classStyle, .procedure = Procedure, .background = options.background, .name = name});
        creating = this;
        window = CreateNativeWindow(name, "Recorder", options.style, options.bounds, options.parent);
        creating = nullptr;
        if (options.show)
            ShowNative(window, true);
        UpdateNow(window);
    }
    // A visible child window.
    Recorder(const Recorder& parent, const Rect& bounds)
        : Recorder({.style = kStyleDefault, .bounds = bounds, .parent = parent.window})
    {
    }
    ~Recorder() { DestroyNativeWindow(window); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // The messages of one number, in order.
    std::vector<WndMessage> Of(std::uint32_t message) const
    {
        std::vector<WndMessage> found;
        for (const WndMessage& one : messages) {
            if (one.message == message)
                found.push_back(one);
        }
        return found;
    }
    // Mouse and key messages alone: what a test with events is about.
    std::vector<std::uint32_t> Input() const
    {
        std::vector<std::uint32_t> numbers;
        for (const WndMessage& one : messages) {
            if ((one.message >= kWmNcLButtonDown && one.message <= kWmNcRButtonUp) ||
                (one.message >= kWmKeyDown && one.message <= kWmSysKeyUp) ||
                (one.message >= kWmMouseMove && one.message <= kWmMouseWheel))
                numbers.push_back(one.message);
        }
        return numbers;
    }
    void Clear() { messages.clear(); }

    WindowHandle window = 0;
    std::vector<WndMessage> messages;
    Handler answer;

private:
    static MessageParam Procedure(WindowHandle handle, std::uint32_t message, MessageParam wParam, MessageParam lParam)
    {
        auto* self = static_cast<Recorder*>(UserWord(handle));
        if (!self) {
            self = creating;
            self->window = handle;
            SetUserWord(handle, self);
        }
        const WndMessage record{handle, message, wParam, lParam};
        self->messages.push_back(record);
        if (self->answer) {
            if (const auto result = self->answer(record))
                return *result;
        }
        return DefaultProcedure(handle, message, wParam, lParam);
    }

    static inline Recorder* creating = nullptr;
};

}  // namespace jotlet
