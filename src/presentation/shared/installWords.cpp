#include "presentation/shared/installWords.h"

#include <QCoreApplication>
#include <QTranslator>

namespace tarnvale {

void installWords() {
    auto *const words = new QTranslator(QCoreApplication::instance());
    if (words->load(QStringLiteral(TARNVALE_WORDS)))
        QCoreApplication::installTranslator(words);
}

} // namespace tarnvale
