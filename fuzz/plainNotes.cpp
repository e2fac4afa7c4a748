#include "updates/plainNotes.h"

#include "fuzz/check.h"

#include <QString>

using namespace tarnvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QString input =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    for (const bool isHtml : {false, true}) {
        const std::string notes = plainNotes(input, isHtml);
        check(isUtf8(notes) && notes.size() <= 64u << 10, "notes are bounded text");
        check(notes.find("\n\n\n") == std::string::npos, "no more than one line is empty");
        check(!notes.starts_with('\n') && !notes.ends_with('\n'), "they begin and end with text");
        for (const char c : notes)
            check(c == '\n' || static_cast<unsigned char>(c) >= ' ', "nothing acts on the screen");
    }
    return 0;
}
