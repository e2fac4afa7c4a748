#pragma once

#include <QString>

#include <string>

namespace tarnvale {

/// Release notes as plain text in lines, of at most 64 KiB.
///
/// Notes in HTML lose their markup, and with it every picture, link and script: paragraphs and list items
/// become lines. Text without any tag, and all text that `isHtml` says is none, keeps its own lines. Control
/// and text-direction characters are replaced. The result is for showing as plain text: what was written as
/// an entity may look like a tag.
[[nodiscard]] std::string plainNotes(const QString &notes, bool isHtml);

} // namespace tarnvale
