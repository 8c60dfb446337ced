#include "store/jet/jet_text.h"

#include "platform/code_page.h"
#include "store/jet/jet_error.h"

#include <QStringDecoder>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

QString withoutLoneSurrogates(QString text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            continue;
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

QChar unitAt(QByteArrayView bytes, qsizetype at) {
    if (at + 1 >= bytes.size())
        throw damaged(u"文字が途中で切れています"_s);
    return QChar(qFromLittleEndian<char16_t>(bytes.data() + at));
}

} // namespace

QString textOfUnits(QByteArrayView bytes) {
    const bool hasRuns = bytes.startsWith(QByteArrayView("\xff\xfe", 2));
    QString text;
    text.reserve(bytes.size());
    bool isShort = hasRuns;
    for (qsizetype at = hasRuns ? 2 : 0; at < bytes.size();) {
        if (hasRuns && bytes[at] == '\0') {
            isShort = !isShort;
            ++at;
        } else if (isShort) {
            text += QLatin1Char(bytes[at]);
            ++at;
        } else {
            text += unitAt(bytes, at);
            at += 2;
        }
    }
    return withoutLoneSurrogates(std::move(text));
}

QString textOfCodePage(QByteArrayView bytes, int codePage) {
    if (codePage == 0 || codePage == 932)
        return platform::fromCodePage(bytes);
    QStringDecoder decoder(("windows-" + QByteArray::number(codePage)).constData());
    if (!decoder.isValid())
        throw JetError(Fault::NotReadable, u"コードページ%1の文字は読めません"_s.arg(codePage));
    return decoder(bytes);
}

} // namespace velloria::store::jet
