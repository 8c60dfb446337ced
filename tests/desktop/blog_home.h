// The main window with an entry in the editor and a blog service that it can be posted to.
#pragma once

#include "blog/blog_template.h"
#include "blog/blog_user_data.h"
#include "blog/posted_entries.h"
#include "browser/forms/frmBrowser.h"
#include "core/blog_keys.h"
#include "core/files.h"
#include "core/ini.h"
#include "desktop/editor_home.h"
#include "editor/forms/blog_bar.h"
#include "platform/code_page.h"
#include "platform/file_write.h"
#include "support/fake_blog.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QWebEngineView>

namespace velloria::tests {

/// Fixture: an entry of kDay in the editor, saved; the service, which knows the user of each template that is used.
/// What the user sees are boxes() and statuses(), what the service sees is its log.
class BlogHome : public EditorHome {
protected:
    using Changes = QMap<QString, QString>;

    static inline const QString kTitle = QStringLiteral("題名");
    static inline const QString kBody = QStringLiteral("今日の出来事");
    static inline const QString kPosted =
        QStringLiteral("information: Blog投稿完了！\r\n画像ファイルは手動でアップロードしてください。");
    static inline const QString kPostedStatus =
        QStringLiteral("日記投稿完了！画像ファイルは手動でアップロードして下さい。");
    static inline const QString kTimedOut = QStringLiteral("critical: Blog投稿失敗！\r\nタイムアウト(60秒)です。");
    static inline const QString kFailedStatus = QStringLiteral("日記投稿失敗！");
    static inline const QString kNotThePage = QStringLiteral("information: 投稿画面にならないので、投稿を中止します");
    static inline const QList<QByteArray> kLinesOfAPost{"GET /post", "POST /do", "GET /done"};
    static inline const QList<QByteArray> kLinesWithLogin{"GET /post", "GET /login", "POST /login",
                                                          "GET /post", "POST /do",   "GET /done"};

    void SetUp() override {
        EditorHome::SetUp();
        openEntry(kBody);
        limitAtStart = waitLimit();
        limitWaits(kPatienceMs);
    }
    ~BlogHome() override {
        context.windows.closeAll();
        QTest::qWait(50); // the engine writes its files after the last page, and the folder is removed next
    }

    browser::frmBrowser& browser() { return context.windows.get<browser::frmBrowser>(); }
    QWebEngineView& view() { return control<QWebEngineView>(browser(), QStringLiteral("WebBrowser")); }
    QPushButton& button() { return control<QPushButton>(calendar(), QStringLiteral("Btn_BlogControl")); }
    QComboBox& blogs() { return control<QComboBox>(calendar(), QStringLiteral("cmbBlog")); }
    QComboBox& actions() { return control<QComboBox>(calendar(), QStringLiteral("cmbBlogAction")); }

    /// Saves an entry as the only one of its day and opens it.
    void openEntry(const QString& body, const QString& genre = QStringLiteral("旅"), bool isPrivate = false) {
        sql(QStringLiteral("DELETE FROM Contents"));
        store::Entry entry = entryOf(kDay, kTitle);
        entry.contents = body;
        entry.genre = genre;
        entry.isPrivate = isPrivate;
        write(entry);
        clickDay(6);
    }

    /// Installs tests/data/blog/`name`.blg with some of its values changed, or taken away with a null text, and picks
    /// it in the list. The user's login is known.
    void useTemplate(const QString& name, const Changes& changes = {}) {
        const QString file = core::files::kBlogTemplates.in(session) + u'/' + name + QStringLiteral(".ini");
        QString text = platform::fromCodePage(
            platform::readFile(QStringLiteral(VELLORIA_TEST_DATA "/blog/") + name + QStringLiteral(".blg")));
        writeFile(file, platform::toCodePage(text.replace(QStringLiteral("%SITE%"), site.address())));
        for (const auto& [key, value] : changes.asKeyValueRange()) {
            if (value.isNull())
                core::DeleteIniKey(file, QStringLiteral("Simple"), key);
            else
                core::WriteIni(file, QStringLiteral("Simple"), key, value);
        }
        templateName = name;
        store(core::keys::blog_user::kLoginID, QStringLiteral("writer"));
        store(core::keys::blog_user::kPassword, QStringLiteral("pa%ss+w&rd"));
        calendar().fillBlogs();
        blogs().setCurrentIndex(blogs().findText(name));
        ASSERT_EQ(blogs().currentText(), name);
    }
    QString stored(const core::Setting& row) const { return blog::BlogUserData(session, templateName).value(row); }
    void store(const core::Setting& row, const QString& value) const {
        blog::BlogUserData(session, templateName).store(row, value);
    }
    /// The defaults of every post in "Blog.ini".
    void setFlag(const QString& key, bool isOn) const {
        core::WriteIni(session.BlogIniFile, QStringLiteral("SIMPLE"), key,
                       isOn ? QStringLiteral("1") : QStringLiteral("0"));
    }

    void press(int action) {
        actions().setCurrentIndex(action);
        QTest::mouseClick(&button(), Qt::LeftButton);
    }
    /// Presses 投稿 and waits for the end of the run; what was told and asked before is forgotten.
    void post() {
        desk.events = {};
        site.forgetLog();
        press(0);
    }
    /// Shows a page of the service.
    void open(const QString& page) {
        browser().bDocumentComplete = false;
        browser().Navigate(site.address(page));
        ASSERT_TRUE(waitFor([this] { return browser().bDocumentComplete; }));
    }
    /// Posts with everybody logged in, and gives what the service got. Fails the test when it is not one post, told as
    /// a good one.
    FakeBlog::Request posted() {
        site.set(QStringLiteral("login"), QStringLiteral("on"));
        post();
        EXPECT_EQ(boxes(), QStringList{kPosted});
        EXPECT_EQ(statuses().value(statuses().size() - 1), kPostedStatus);
        const QList<FakeBlog::Request> posts = requests("POST /do");
        EXPECT_EQ(posts.size(), 1);
        return posts.value(0);
    }
    FakeBlog::Request posted(const QString& name, const Changes& changes = {}) {
        useTemplate(name, changes);
        return posted();
    }

    /// Posts while the service never answers the last of these lines, or answers it with nothing: a short limit ends
    /// it. On a machine that is too busy to come that far in a short time, a longer one.
    void expectRunsOut(const QList<QByteArray>& lines, const QString& login = QStringLiteral("on")) {
        EXPECT_TRUE(worksInSomeTime([&](int ms) {
            site.set(QStringLiteral("login"), login);
            limitWaits(ms);
            post();
            EXPECT_EQ(boxes(), QStringList{kTimedOut});
            return site.lines() == lines;
        })) << site.lines().join('\n').toStdString();
        EXPECT_EQ(statuses().last(), kFailedStatus);
        limitWaits(kPatienceMs);
    }

    QList<FakeBlog::Request> requests(const QByteArray& line) const {
        QList<FakeBlog::Request> found;
        for (const FakeBlog::Request& request : site.log()) {
            if (request.line == line)
                found += request;
        }
        return found;
    }
    /// The lines of the first panel, those of the browser about its pages apart.
    QStringList statuses() const {
        QStringList lines = desk.texts(QStringLiteral("status"));
        lines.removeIf([](const QString& line) { return line.startsWith(QStringLiteral("Webページ")); });
        return lines;
    }
    static QString failedAt(const QString& stage) {
        return QStringLiteral("critical: エラーが発生しました。\r\nError_Code:") + stage;
    }
    /// What was asked by a prompt, each with its proposal.
    QStringList prompts() const {
        QStringList lines;
        for (const QJsonValue& event : desk.events) {
            if (event[QStringLiteral("event")] == QStringLiteral("input"))
                lines += event[QStringLiteral("text")].toString() + u'|' + event[QStringLiteral("default")].toString();
        }
        return lines;
    }

    /// The time that each wait may take.
    void limitWaits(int ms) { waitLimit() = std::chrono::milliseconds(ms); }
    std::chrono::milliseconds& waitLimit() { return button().findChild<editor::BlogBar*>()->waitLimit; }

    /// Waits for what the service is asked: with the browser at full speed, which many small steps of waiting slow
    /// down.
    template <class Condition>
    static bool waitFor(Condition condition) {
        constexpr int kLookMs = 100;
        QElapsedTimer clock;
        clock.start();
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (condition() || clock.hasExpired(kPatienceMs))
                loop.quit();
        });
        look.start(kLookMs);
        if (!condition())
            loop.exec();
        return condition();
    }
    bool isAsked(const QByteArray& line) {
        return waitFor([&] { return site.lines().contains(line); });
    }

    /// Acts as soon as the service has been asked for that, while the run waits.
    template <class Action>
    void whenAsked(const QByteArray& line, Action action) {
        QTimer::singleShot(20, &top(), [=, this] {
            if (site.lines().contains(line))
                action();
            else
                whenAsked(line, action);
        });
    }

    FakeBlog site;
    std::chrono::milliseconds limitAtStart{}; ///< of each wait, as the program has it
    QString templateName;                     ///< of the one in use
};

} // namespace velloria::tests
