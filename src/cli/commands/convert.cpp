#include "cli/command.h"
#include "cli/streams.h"
#include "convert/colour.h"
#include "convert/html_to_text.h"
#include "convert/paragraphs.h"
#include "convert/password_text.h"
#include "convert/url_encoding.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "shell/home.h"
#include "shell/users.h"

#include <QCoreApplication>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void html2text(Invocation& invocation) {
    const QString settings = invocation.option(u"--ini"_s);
    refuseUnreadableSettings(settings);
    convert::clsHTML2TEXT converter;
    if (!converter.Initialize(settings))
        throw Refusal(
            u"HTML2TXT Initializeファイル読み込みエラー [%1] --ini に設定ファイルを指定してください。"_s.arg(settings));
    for (const QString& setting : invocation.options.value(u"--set"_s)) {
        if (!setting.contains(u'=') || !converter.SetValue(setting.section(u'=', 0, 0), setting.section(u'=', 1)))
            throw UsageError(u"--set は KEY=VALUE の形で指定してください: %1"_s.arg(setting));
    }
    QString text = readArgumentText(invocation.argument(0));
    writeOutput(converter.Execute(text).toUtf8());
}

void urlencode(Invocation& invocation) {
    const QString encoding = invocation.argument(0);
    QString (*encode)(const QString&) = encoding == u"sjis"_s    ? convert::ModURLEncode
                                        : encoding == u"eucjp"_s ? convert::ModURLEncodeEUC
                                        : encoding == u"utf8"_s  ? convert::ModURLEncodeUTF8
                                                                 : nullptr;
    if (!encode)
        throw UsageError(
            u"「%1」という符号化はありません (sjis、eucjp、utf8 のどれかを指定してください)。"_s.arg(encoding));
    writeOutput(encode(readArgumentText(invocation.argument(1))).toUtf8());
}

QString homeOf(const Invocation& invocation) {
    return shell::findHomeToRead(invocation.global.home, QCoreApplication::applicationDirPath());
}

/// With the attributes of the one user; where there are several, nobody has logged in.
QString paragraphOpening(const Invocation& invocation) {
    const QString home = homeOf(invocation);
    core::Session session;
    if (!shell::Users(home).exist())
        session.DiaryIniFile = platform::existingPath(home + u"UserData/diary.ini"_s);
    return convert::paragraphOpening(session);
}

void paragraphs(Invocation& invocation) {
    static const QRegularExpression lineEnd(u"\r\n|\r|\n"_s);
    QString text = readArgumentText(invocation.argument(0));
    const QRegularExpressionMatch first = lineEnd.match(text);
    text = convert::addParagraphTags(text.replace(lineEnd, u"\r\n"_s), paragraphOpening(invocation));
    if (first.hasMatch())
        text.replace(u"\r\n"_s, first.captured());
    writeOutput(text.toUtf8());
}

void colour(Invocation& invocation) {
    QString text = invocation.argument(0);
    writeOutput(convert::exchangeColour(homeOf(invocation), text).toUtf8());
}

void scramble(Invocation&) {
    const QString password = readArgumentText({});
    if (!platform::inCodePage(password))
        throw Refusal(u"パスワードに使えない文字が含まれています。コードページ932にある文字だけを使ってください。"_s);
    writeOutput(convert::EncryptPassword(password).toUtf8());
}

void unscramble(Invocation&) {
    writeOutput(convert::DecryptPassword(readArgumentText({})).toUtf8());
}

} // namespace

std::vector<Command> convertCommands() {
    return {
        {u"convert html2text"_s,
         u"--ini FILE [--set KEY=VALUE]... [FILE]"_s,
         0,
         1,
         {{u"--ini"_s, u"FILE"_s, true}, {u"--set"_s, u"KEY=VALUE"_s}},
         u"HTMLをテキストにする (UTF-8)"_s,
         Start::None,
         html2text},
        {u"convert urlencode"_s,
         u"sjis|eucjp|utf8 [FILE]"_s,
         1,
         2,
         {},
         u"URLに使う形に符号化する"_s,
         Start::None,
         urlencode},
        {u"convert paragraphs"_s,
         u"[FILE]"_s,
         0,
         1,
         {},
         u"段落にHTMLタグを付ける (UTF-8、改行は入力のまま)"_s,
         Start::None,
         paragraphs},
        {u"convert colour"_s, u"TEXT"_s, 1, 1, {}, u"色の名前と番号を入れ替える"_s, Start::None, colour},
        {u"convert scramble"_s, {}, 0, 0, {}, u"標準入力のパスワードを保存用の文字列にする"_s, Start::None, scramble},
        {u"convert unscramble"_s, {}, 0, 0, {}, u"保存用の文字列をパスワードに戻す"_s, Start::None, unscramble},
    };
}

} // namespace velloria::cli
