// The Mac's key codes are those of Events.h (Carbon, HIToolbox), `kVK_ANSI_...` for the keys that layouts
// change: positions, named after what an American layout writes there. The kernel's are those of
// input-event-codes.h, positions named in the same way, so that equal names are equal places. Where the
// keyboards differ, the USB usage that both systems know the key by decides (HID Usage Tables, 10).

#include "commands/hotkey/keyPositions.h"

#include <algorithm>
#include <linux/input-event-codes.h>

namespace tarnvale {

namespace {

/// xkb counts on from the kernel's codes.
constexpr std::uint32_t xkb(std::uint32_t kernelCode) {
    constexpr std::uint32_t offset = 8;
    return kernelCode + offset;
}

constexpr KeyPosition table[] = {
    {0x00, xkb(KEY_A)},          {0x01, xkb(KEY_S)},          {0x02, xkb(KEY_D)},
    {0x03, xkb(KEY_F)},          {0x04, xkb(KEY_H)},          {0x05, xkb(KEY_G)},
    {0x06, xkb(KEY_Z)},          {0x07, xkb(KEY_X)},          {0x08, xkb(KEY_C)},
    {0x09, xkb(KEY_V)},          {0x0a, xkb(KEY_102ND)}, // ISO_Section: the key that American keyboards lack
    {0x0b, xkb(KEY_B)},          {0x0c, xkb(KEY_Q)},          {0x0d, xkb(KEY_W)},
    {0x0e, xkb(KEY_E)},          {0x0f, xkb(KEY_R)},          {0x10, xkb(KEY_Y)},
    {0x11, xkb(KEY_T)},          {0x12, xkb(KEY_1)},          {0x13, xkb(KEY_2)},
    {0x14, xkb(KEY_3)},          {0x15, xkb(KEY_4)},          {0x16, xkb(KEY_6)},
    {0x17, xkb(KEY_5)},          {0x18, xkb(KEY_EQUAL)},      {0x19, xkb(KEY_9)},
    {0x1a, xkb(KEY_7)},          {0x1b, xkb(KEY_MINUS)},      {0x1c, xkb(KEY_8)},
    {0x1d, xkb(KEY_0)},          {0x1e, xkb(KEY_RIGHTBRACE)}, {0x1f, xkb(KEY_O)},
    {0x20, xkb(KEY_U)},          {0x21, xkb(KEY_LEFTBRACE)},  {0x22, xkb(KEY_I)},
    {0x23, xkb(KEY_P)},          {0x24, xkb(KEY_ENTER)},      {0x25, xkb(KEY_L)},
    {0x26, xkb(KEY_J)},          {0x27, xkb(KEY_APOSTROPHE)}, {0x28, xkb(KEY_K)},
    {0x29, xkb(KEY_SEMICOLON)},  {0x2a, xkb(KEY_BACKSLASH)},  {0x2b, xkb(KEY_COMMA)},
    {0x2c, xkb(KEY_SLASH)},      {0x2d, xkb(KEY_N)},          {0x2e, xkb(KEY_M)},
    {0x2f, xkb(KEY_DOT)},        {0x30, xkb(KEY_TAB)},        {0x31, xkb(KEY_SPACE)},
    {0x32, xkb(KEY_GRAVE)},      {0x33, xkb(KEY_BACKSPACE)}, // Delete
    {0x35, xkb(KEY_ESC)},        {0x40, xkb(KEY_F17)},        {0x41, xkb(KEY_KPDOT)},
    {0x43, xkb(KEY_KPASTERISK)}, {0x45, xkb(KEY_KPPLUS)},     {0x48, xkb(KEY_VOLUMEUP)},
    {0x49, xkb(KEY_VOLUMEDOWN)}, {0x4a, xkb(KEY_MUTE)},       {0x4b, xkb(KEY_KPSLASH)},
    {0x4c, xkb(KEY_KPENTER)},    {0x4e, xkb(KEY_KPMINUS)},    {0x4f, xkb(KEY_F18)},
    {0x50, xkb(KEY_F19)},        {0x51, xkb(KEY_KPEQUAL)},    {0x52, xkb(KEY_KP0)},
    {0x53, xkb(KEY_KP1)},        {0x54, xkb(KEY_KP2)},        {0x55, xkb(KEY_KP3)},
    {0x56, xkb(KEY_KP4)},        {0x57, xkb(KEY_KP5)},        {0x58, xkb(KEY_KP6)},
    {0x59, xkb(KEY_KP7)},        {0x5a, xkb(KEY_F20)},        {0x5b, xkb(KEY_KP8)},
    {0x5c, xkb(KEY_KP9)},        {0x5d, xkb(KEY_YEN)}, // JIS_Yen
    {0x5e, xkb(KEY_RO)},                               // JIS_Underscore
    {0x5f, xkb(KEY_KPJPCOMMA)},                        // JIS_KeypadComma
    {0x60, xkb(KEY_F5)},         {0x61, xkb(KEY_F6)},         {0x62, xkb(KEY_F7)},
    {0x63, xkb(KEY_F3)},         {0x64, xkb(KEY_F8)},         {0x65, xkb(KEY_F9)},
    {0x66, xkb(KEY_HANJA)},                                // JIS_Eisu: usage LANG2
    {0x67, xkb(KEY_F11)},        {0x68, xkb(KEY_HANGEUL)}, // JIS_Kana: usage LANG1
    {0x69, xkb(KEY_F13)},        {0x6a, xkb(KEY_F16)},        {0x6b, xkb(KEY_F14)},
    {0x6d, xkb(KEY_F10)},        {0x6e, xkb(KEY_COMPOSE)}, // ContextualMenu: usage Application
    {0x6f, xkb(KEY_F12)},        {0x71, xkb(KEY_F15)},        {0x72, xkb(KEY_INSERT)}, // Help: usage Insert
    {0x73, xkb(KEY_HOME)},       {0x74, xkb(KEY_PAGEUP)},     {0x75, xkb(KEY_DELETE)}, // ForwardDelete
    {0x76, xkb(KEY_F4)},         {0x77, xkb(KEY_END)},        {0x78, xkb(KEY_F2)},
    {0x79, xkb(KEY_PAGEDOWN)},   {0x7a, xkb(KEY_F1)},         {0x7b, xkb(KEY_LEFT)},
    {0x7c, xkb(KEY_RIGHT)},      {0x7d, xkb(KEY_DOWN)},       {0x7e, xkb(KEY_UP)},
};

} // namespace

std::span<const KeyPosition> keyPositions() {
    return table;
}

std::optional<std::uint32_t> macKeyCodeAt(std::uint32_t keycode) {
    const auto *const found = std::find_if(std::begin(table), std::end(table),
                                           [=](const KeyPosition &key) { return key.keycode == keycode; });
    return found == std::end(table) ? std::nullopt : std::optional(found->macKeyCode);
}

std::optional<std::uint32_t> keycodeAt(std::uint32_t macKeyCode) {
    const auto *const found = std::find_if(std::begin(table), std::end(table), [=](const KeyPosition &key) {
        return key.macKeyCode == macKeyCode;
    });
    return found == std::end(table) ? std::nullopt : std::optional(found->keycode);
}

} // namespace tarnvale
