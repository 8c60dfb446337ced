// A home with users and memos.
#pragma once

#include "core/ini.h"
#include "memo/memo_book.h"
#include "support/test_home.h"

namespace velloria::tests {

/// Fixture: the session of TestHome, and words to store memos behind the program's back.
class MemoHome : public TestHome {
protected:
    MemoHome() {
        desk.events = {};
        setNow(QStringLiteral("2026/11/23 10:00:00"));
    }

    QString usersFile() const { return session.MyPath + QStringLiteral("velluser.ini"); }

    /// Makes the session's user one with a password ("" for none), who keeps the session's folder.
    void logIn(const QString& password = QStringLiteral("abc")) {
        core::WriteIni(usersFile(), QStringLiteral("taro"), QStringLiteral("ID"), QStringLiteral("taro"));
        core::WriteIni(usersFile(), QStringLiteral("taro"), QStringLiteral("Pass"), scrambled(password));
        core::WriteIni(usersFile(), QStringLiteral("taro"), QStringLiteral("Path"), session.UserPath);
        session.IsLogin = true;
        session.UserID = QStringLiteral("taro");
    }
    static QString scrambled(const QString& password) {
        return password == QStringLiteral("abc") ? QStringLiteral("dcb") : QString();
    }

    store::Memo store(const QString& title, const QString& text = QStringLiteral("text"),
                      const QString& category = QStringLiteral(""), bool isLocked = false) {
        store::Memo memo;
        memo.title = title;
        memo.text = text;
        memo.category = category;
        memo.isLocked = isLocked;
        return store::MemoStore(run).save(memo, std::nullopt, {}).memo;
    }
    QByteArray rescued() const {
        const QString file = session.UserPath + QStringLiteral("memo_rescue.jsonl");
        return exists(file) ? bytesOf(file) : QByteArray();
    }
    QString draftFile() const { return session.UserPath + QStringLiteral("memo_draft.json"); }
};

} // namespace velloria::tests
