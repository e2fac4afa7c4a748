#pragma once

#include "discovery/FileDescriptor.h"
#include "platform/descriptorNotifier.h"
#include "preview-renderer/PagePainter.h"

#include <QCoroTask>
#include <QObject>

#include <string>

namespace tarnvale {

/// Answers one request after the other, and ends the program when no more can come. Main thread.
class PreviewService : public QObject {
public:
    /// Reads requests from `input` and writes replies to `output`; see `platform/PreviewProtocol.h`.
    PreviewService(FileDescriptor input, FileDescriptor output);

    /// Says that the program is ready once the browser draws, and listens then.
    QCoro::Task<> run();

private:
    void read();
    QCoro::Task<> answer();
    void reply(const QByteArray &picture);

    FileDescriptor m_input;
    FileDescriptor m_output;
    PagePainter m_painter;
    std::string m_requests; ///< what was read and isn't answered
    bool m_isPainting = false;
    DescriptorNotifier m_notifier; ///< before its descriptor goes
};

} // namespace tarnvale
