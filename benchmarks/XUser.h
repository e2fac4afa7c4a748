#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace tarnvale {

/// Ends a benchmark that can't go on.
[[noreturn]] inline void fail(const char *reason) {
    std::fprintf(stderr, "benchmark: %s\n", reason);
    std::exit(1);
}

/// The result of a benchmark: one line of whole numbers.
inline void print(const std::vector<std::int64_t> &numbers) {
    for (const std::int64_t number : numbers)
        std::printf("%lld ", static_cast<long long>(number));
    std::printf("\n");
}

/// The keyboard and the screen of an X server, as a user has them.
class XUser {
public:
    XUser() : m_connection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(m_connection) != 0)
            fail("there is no X server");
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    }
    XUser(const XUser &) = delete;
    XUser &operator=(const XUser &) = delete;
    ~XUser() { xcb_disconnect(m_connection); }

    [[nodiscard]] int width() const { return m_screen->width_in_pixels; }
    [[nodiscard]] int height() const { return m_screen->height_in_pixels; }

    /// Presses or releases the key of this code, which is evdev's plus 8 on every X server on Linux.
    void key(std::uint8_t code, bool isPress) {
        xcb_test_fake_input(m_connection, isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, 0, m_screen->root,
                            0, 0, 0);
        xcb_flush(m_connection);
    }

    /// The colour of one pixel of the screen, as 0xRRGGBB.
    [[nodiscard]] std::uint32_t pixel(int x, int y) {
        const auto asked =
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root,
                          static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
            xcb_get_image_reply(m_connection, asked, nullptr), &std::free);
        if (!reply || xcb_get_image_data_length(reply.get()) < 4)
            fail("the screen can't be read");
        std::uint32_t value = 0;
        std::copy_n(xcb_get_image_data(reply.get()), sizeof value, reinterpret_cast<std::uint8_t *>(&value));
        return value & 0xFFFFFF;
    }

private:
    xcb_connection_t *m_connection;
    xcb_screen_t *m_screen;
};

} // namespace tarnvale
