// Posts to blogs as a person does in the windows, for tests that know what comes of it.
//
//     post_entry HOME
//
// Each line of standard input is a step, a JSON object of which every member may be missing:
//
//     entry     {day, title, body, genre, private}: is saved and opened
//     flags     {Status, AcceptComment, AcceptTrackBack, Type} of "Blog.ini"
//     user      {LoginID, Password, PostURL, ...} of the blog
//     blog      is picked, and the action (投稿, 閲覧, 管理) with it; the button is pressed
//     answers   to the desk's questions in turn
//     windows   that come up over a page, in turn: null closes one, a list of texts fills its fields and accepts it
//     until     waits until the browser's address begins with this
//     picture   file for a picture of the main window
//
// and is answered by a line: {"events": [...], "address": "..."}. The end of the input closes the main window.
#include "app/surroundings.h"
#include "blog/blog_user_data.h"
#include "browser/forms/frmBrowser.h"
#include "browser/forms/web_page.h"
#include "core/blog_keys.h"
#include "core/settings_change.h"
#include "core/site_keys.h"
#include "editor/forms/frmCalender.h"
#include "platform/failure.h"
#include "shell/forms/desktop_start.h"
#include "shell/forms/MDIFormTop.h"
#include "store/diary_store.h"
#include "support/scripted_desk.h"
#include "support/waiting.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>
#include <QWebEngineView>

#include <cstdio>
#include <iostream>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Poster {
public:
    explicit Poster(const QString& home) {
        if (shell::startDesktop(m_context, home) != shell::StartResult::Ready)
            throw std::runtime_error("the start ended early");
        top().setGeometry(top().screen()->availableGeometry());
        QObject::connect(&m_windowWatch, &QTimer::timeout, [this] { answerWindow(); });
        m_windowWatch.start(50);
    }

    shell::MDIFormTop& top() { return m_context.windows.get<shell::MDIFormTop>(); }

    QJsonObject take(const QJsonObject& step) {
        m_desk.events = {};
        m_desk.answers = step[u"answers"_s].toArray();
        m_windows = step[u"windows"_s].toArray();
        const QString blog = step[u"blog"_s].toString();
        setFlags(step[u"flags"_s].toObject());
        setUser(blog, step[u"user"_s].toObject());
        if (step.contains(u"entry"_s))
            open(step[u"entry"_s].toObject());
        if (!blog.isEmpty())
            press(blog, step[u"action"_s].toString(u"投稿"_s));
        if (step.contains(u"until"_s) && !waitFor([&] { return address().startsWith(step[u"until"_s].toString()); }))
            throw std::runtime_error("the browser did not get there, but to " + address().toStdString());
        if (step.contains(u"picture"_s))
            shoot(step[u"picture"_s].toString());
        for (const QJsonValue& answer : m_desk.answers)
            tell({{u"event"_s, u"not asked"_s}, {u"answer"_s, answer}});
        for (const QJsonValue& window : m_windows)
            tell({{u"event"_s, u"not shown"_s}, {u"window"_s, window}});
        return {{u"events"_s, m_desk.events}, {u"address"_s, address()}};
    }

private:
    void tell(const QJsonObject& event) { m_desk.events.append(event); }

    void setFlags(const QJsonObject& flags) {
        using namespace core::keys::blog;
        core::SettingsChange change;
        for (const core::Setting& row : {kStatus, kAcceptComment, kAcceptTrackBack, kPandBRTag}) {
            if (flags.contains(row.name))
                change.set(m_session, row, QString::number(flags[row.name].toInt()));
        }
        change.write();
    }

    void setUser(const QString& name, const QJsonObject& values) {
        const blog::BlogUserData data(m_session, name);
        for (const core::Setting& row : core::keys::blog_user::kAll) {
            if (values.contains(row.name))
                data.store(row, values[row.name].toString());
        }
    }

    void open(const QJsonObject& told) {
        store::Entry entry;
        entry.day = told[u"day"_s].toString(u"2026/11/20"_s);
        entry.title = told[u"title"_s].toString();
        entry.contents = told[u"body"_s].toString();
        entry.weather = u"-"_s;
        entry.genre = told[u"genre"_s].toString(u"一般"_s);
        entry.isPrivate = told[u"private"_s].toBool();
        entry.number = 0; // a new one, which opens as the day's last
        store::DiaryStore(m_context).saveEntries({entry}, store::PublishTime::Now, {});
        m_context.windows.get<editor::frmCalender>().Calender_DateClick(QDate::fromString(entry.day, u"yyyy/MM/dd"_s));
    }

    void press(const QString& blog, const QString& action) {
        auto& calendar = m_context.windows.get<editor::frmCalender>();
        for (const auto& [name, text] : {std::pair(u"cmbBlog"_s, blog), std::pair(u"cmbBlogAction"_s, action)}) {
            auto* box = calendar.findChild<QComboBox*>(name);
            box->setCurrentIndex(box->findText(text));
            if (box->currentText() != text)
                throw std::runtime_error("there is no " + text.toStdString());
            Q_EMIT box->activated(box->currentIndex());
        }
        calendar.findChild<QPushButton*>(u"Btn_BlogControl"_s)->click();
    }

    void shoot(const QString& file) {
        QTest::qWait(2000); // a page that is complete is drawn a little later
        if (!top().screen()->grabWindow(top().winId()).save(file))
            throw std::runtime_error("the picture can't be saved");
    }

    /// Of the page in the browser; "" before the first one.
    QString address() {
        const auto* view = m_context.windows.get<browser::frmBrowser>().findChild<QWebEngineView*>();
        return view ? view->url().toString() : QString();
    }

    /// What stands in the fields is told, a password as so many stars.
    void answerWindow() {
        auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!window || !window->isVisible())
            return;
        QStringList labels;
        for (const QLabel* label : window->findChildren<QLabel*>())
            labels += label->text();
        const QJsonValue answer = m_windows.isEmpty() ? QJsonValue() : m_windows.takeAt(0);
        QStringList fields;
        for (QLineEdit* field : window->findChildren<QLineEdit*>()) {
            fields += field->displayText();
            if (const QJsonValue text = answer[fields.size() - 1]; text.isString())
                field->setText(text.toString());
        }
        tell({{u"event"_s, u"window"_s},
              {u"title"_s, window->windowTitle()},
              {u"labels"_s, QJsonArray::fromStringList(labels)},
              {u"fields"_s, QJsonArray::fromStringList(fields)}});
        if (answer.isArray())
            window->accept();
        else
            window->reject();
    }

    core::Session m_session;
    const platform::SystemClock m_clock;
    ScriptedDesk m_desk;
    desktop::Context m_context{{m_session, m_clock, m_desk}};
    QTimer m_windowWatch;
    QJsonArray m_windows;
};

int run(const QString& home) {
    Poster poster(home);
    int result = 0;
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        input.setEnabled(false);
        std::string line;
        if (!std::getline(std::cin, line)) {
            poster.top().close();
            return;
        }
        try {
            const QJsonObject step = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
            std::cout << QJsonDocument(poster.take(step)).toJson(QJsonDocument::Compact).constData() << std::endl;
        } catch (const std::exception& failure) {
            std::cerr << failure.what() << std::endl;
            result = 1;
            poster.top().close();
        }
        input.setEnabled(true);
    });
    QApplication::exec();
    return result;
}

} // namespace
} // namespace velloria::tests

int main(int argc, char** argv) {
    velloria::app::letBrowserRunAsRoot();
    velloria::browser::registerEventScheme();
    QApplication application(argc, argv);
    velloria::app::prepareApplication(application);
    try {
        return velloria::tests::run(QString::fromLocal8Bit(argv[1]));
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << std::endl;
        return 1;
    }
}
