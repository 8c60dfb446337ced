#include "publish/ftp_folders.h"

#include "publish/internet_error.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

using platform::MessageKind;

QString withBusyServer(const QString& text) {
    return text + u"\r\nサーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"_s;
}

} // namespace

bool FtpFolders::CheckFTPFolder(const QString& name) {
    m_desk.status(u"Checking Folder \""_s + name + u"\" !"_s);
    if (m_internet.findDirectory(name))
        return true;
    if (m_internet.lastError() != kNoMoreFiles)
        return refused(InternetErrorText(m_internet));
    if (m_desk.ask(u"フォルダ「"_s + name + u"」が作成されていません。\r\n作成しますか？"_s))
        return makeFolder(name);
    m_refusal = u"フォルダは作成しませんでした。"_s;
    m_desk.message(MessageKind::Information, u"フォルダは作成しませんでした。\r\n日記保存先に「"_s + name +
                                                 u"」フォルダをご自分で作成して下さい。"_s);
    return false;
}

bool FtpFolders::makeFolder(const QString& name) {
    if (m_internet.createDirectory(name)) {
        m_desk.status(u"Making Folder Successful!"_s);
        return true;
    }
    return refused(withBusyServer(u"フォルダの作成に失敗しました。"_s));
}

bool FtpFolders::ChangeFTPDirectory(const QString& path, const QString& name) {
    const QString shown = name == u".."_s ? path.left(path.lastIndexOf(u'/') + 1) : path + name;
    m_desk.status(u"Moving to "_s + shown);
    if (m_internet.changeDirectory(name)) {
        m_desk.status(u"Change Directory "_s + shown + u" is Completed!"_s);
        return true;
    }
    return refused(withBusyServer(u"ディレクトリ変更ができませんでした。"_s));
}

bool FtpFolders::refused(const QString& text) {
    m_refusal = showNetworkError(m_internet, m_desk);
    m_desk.message(MessageKind::Critical, text);
    return false;
}

} // namespace velloria::publish
