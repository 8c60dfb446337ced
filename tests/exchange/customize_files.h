// Customize sets of a home of their own, and a folder to which and from which they travel.
#pragma once

#include "core/ini.h"
#include "exchange/customize_exchange.h"
#include "support/test_home.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>

namespace velloria::tests {

using namespace Qt::StringLiterals;
using exchange::CustomizeAuthor;
using exchange::CustomizeExchange;
using exchange::CustomizeFormat;

inline const QString kNewName = u"同じ名称の物が存在します。\r\n新しい名前を入力して下さい。"_s;
inline const QString kReplace = u"question: 同名のファイルが存在します。\r\n上書きしますか？"_s;
inline const QByteArray kSet = "; mine\r\n[General]\r\nHPTitle=Home\r\nUnknown=1\r\n[Body]\r\nTextColor=#123456\r\n";
inline const CustomizeAuthor kAuthor{u"太郎"_s, u"http://a.example/"_s, u"a@a.example"_s};
inline const QByteArray kSigned =
    "[Author]\r\nName=\x91\xbe\x98\x59\r\nURL=http://a.example/\r\nE-mail=a@a.example\r\n";

class CustomizeFiles : public TestHome {
protected:
    CustomizeFiles() {
        QDir(home.path()).mkdir(u"out"_s);
        writeFile(setFile(u"mine"_s), kSet);
    }

    QString folder() const { return session.DataPath + u"Customize/"_s; }
    QString setFile(const QString& name) const { return folder() + name + u".ini"_s; }
    QString out(const QString& name = {}) const { return path(u"out/"_s + name); }
    QString file(const QString& name, const QByteArray& bytes = kSet) {
        writeFile(out(name), bytes);
        return out(name);
    }
    QString key(const QString& file, const QString& section, const QString& name) const {
        return core::ReadIniDef(file, section, name, u"none"_s);
    }
    QJsonObject inputEvent() const {
        for (const QJsonValue& event : desk.events) {
            if (event[u"event"_s] == u"input"_s)
                return event.toObject();
        }
        return {};
    }
    bool import(const QString& chosen, const QJsonArray& answers = {}) {
        desk.events = {};
        desk.answers = answers;
        desk.answers.prepend(chosen);
        CustomizeExchange exchange(run);
        const bool isDone = exchange.importCommand();
        imported = exchange.importedFile();
        EXPECT_TRUE(desk.answers.isEmpty());
        return isDone;
    }
    bool exportTo(const QString& chosen, CustomizeFormat format = CustomizeFormat::Ini, const QJsonArray& answers = {},
                  const CustomizeAuthor& author = kAuthor) {
        desk.events = {};
        desk.answers = answers;
        desk.answers.prepend(chosen);
        CustomizeExchange exchange(run);
        const bool isDone = exchange.exportCommand(u"mine"_s, format, author);
        exported = exchange.exportedFile();
        EXPECT_TRUE(desk.answers.isEmpty());
        return isDone;
    }

    QString imported;
    QString exported;
};

} // namespace velloria::tests
