#include "App/Platform/Linux/Clipboard/ClipboardText.h"

#include <QStringDecoder>

QString ClipboardText::decoded(const QByteArray& bytes, Encoding encoding)
{
    if (encoding == Encoding::latin1)
        return QString::fromLatin1(bytes);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    const bool isLatin1 = encoding == Encoding::unsaid && decoder.hasError();
    return isLatin1 ? QString::fromLatin1(bytes) : text;
}
