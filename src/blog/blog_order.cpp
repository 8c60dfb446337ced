#include "blog/blog_order.h"

#include "blog/blog_user_data.h"
#include "blog/template_words.h"
#include "convert/html_to_text.h"
#include "core/blog_keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/site_keys.h"
#include "platform/directory.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

namespace keys = core::keys::blog;
namespace user = core::keys::blog_user;
using platform::MessageKind;

class OrderDesk {
public:
    OrderDesk(const core::Run& run, const QString& blog, const BlogEntry& entry, BlogProtocol& protocol)
        : m_run(run)
        , m_blog(blog)
        , m_entry(entry)
        , m_protocol(protocol) {}

    std::optional<BlogOrder> take() {
        readSettings();
        settleAddress(m_order.postUrl, user::kPostURL);
        settleAddress(m_order.nextUrl, user::kNextURL);
        askFor(m_order.postUrl, user::kPostURL);
        askFor(m_order.nextUrl, user::kNextURL);
        if (!canBePosted() || !mayBePosted())
            return std::nullopt;
        convertBody();
        return m_order;
    }

private:
    void readSettings() {
        const core::IniReader defaults = core::Settings(m_run.session).read(core::SettingsFile::Blog);
        const auto isAboveZero = [&defaults](const core::Setting& row) { return defaults.number(row) > 0; };
        m_order.title = m_entry.title;
        m_order.body = m_entry.body;
        m_order.genre = m_entry.genre;
        m_order.isPublic = isAboveZero(keys::kStatus);
        m_order.acceptsComments = isAboveZero(keys::kAcceptComment);
        m_order.acceptsTrackbacks = isAboveZero(keys::kAcceptTrackBack);
        m_paragraphBreak = QString::number(defaults.number(keys::kPandBRTag));
        const auto shown = [](bool isOn) { return isOn ? u"はい"_s : u"いいえ"_s; };
        m_protocol.add(u"公開: %1、コメント: %2、トラックバック: %3"_s.arg(
            shown(m_order.isPublic), shown(m_order.acceptsComments), shown(m_order.acceptsTrackbacks)));
        const QString file = templateFile(m_run.session, m_blog);
        if (!platform::fileExists(file))
            m_protocol.add(u"テンプレートのファイルがありません。"_s);
        m_order.blogTemplate = BlogTemplate::read(file);
        m_order.postUrl = m_order.blogTemplate.postUrl;
        m_order.nextUrl = m_order.blogTemplate.nextUrl;
    }

    void settleAddress(QString& address, const core::Setting& row) const {
        if (address == words::kRequired)
            address = m_data.value(row);
    }

    /// The answer is for the next run: this one keeps its empty address.
    void askFor(const QString& address, const core::Setting& row) {
        if (!address.isEmpty())
            return;
        const QString answer = m_run.desk.input(u"投稿画面のURLを入力してください。"_s, {});
        m_protocol.add(row.name.toString() +
                       (answer.isEmpty() ? u" は入力されませんでした。"_s : u" が入力されました。"_s));
        if (!answer.isEmpty())
            m_data.store(row, answer);
    }

    bool canBePosted() {
        const QString whereToLook = u"\r\nURLの設定は、マニュアルもしくはホームページのBlog設定方法をご覧ください。"_s;
        if (!m_entry.isOpen)
            return refuse(u"投稿する日記が選択されていません。日記の投稿を中止します。"_s);
        if (m_order.title.isEmpty() || m_order.body.isEmpty())
            return refuse(u"タイトルもしくは本文が記入されていないため、日記の投稿を中止します。"_s);
        if (m_order.postUrl.isEmpty() || m_order.postUrl == words::kRequired)
            return refuse(u"投稿URLの設定ができていないため日記の投稿を中止します。"_s + whereToLook);
        if (m_order.nextUrl == words::kRequired)
            return refuse(u"URLの設定ができていないため日記の投稿を中止します。"_s + whereToLook);
        return true;
    }

    bool refuse(const QString& text) {
        m_protocol.add(QString(text).replace(u"\r\n"_s, u" "_s));
        m_run.desk.message(MessageKind::Critical, text);
        return false;
    }

    /// A private entry goes out as the settings say, once its author has agreed.
    bool mayBePosted() {
        if (!m_entry.isPrivate || m_run.desk.ask(u"非公開になっていますが、Blogに投稿しますか？"_s))
            return true;
        m_protocol.add(u"非公開の日記の投稿は取り消されました。"_s);
        return false;
    }

    void convertBody() {
        const QString name = m_order.blogTemplate.html2txt + u".ini"_s;
        convert::clsHTML2TEXT converter;
        // The name is a stranger's, and leads nowhere but into the program's own folder.
        if (!core::isBareName(name) || !converter.Initialize(m_run.session.MyPath + name)) {
            m_protocol.add(u"本文は変換されません: 変換設定 %1 がありません。"_s.arg(name));
            m_run.desk.message(MessageKind::Critical, u"Initializeファイル読み込みエラー"_s);
            return;
        }
        converter.SetValue(u"PBR"_s, m_paragraphBreak);
        QString source = m_order.body; // the conversion takes line ends out of it
        m_order.body = converter.Execute(source);
    }

    const core::Run& m_run;
    const QString& m_blog;
    const BlogEntry& m_entry;
    BlogProtocol& m_protocol;
    const BlogUserData m_data{m_run.session, m_blog};
    QString m_paragraphBreak;
    BlogOrder m_order;
};

} // namespace

std::optional<BlogOrder> takeOrder(const core::Run& run, const QString& blog, const BlogEntry& entry,
                                   BlogProtocol& protocol) {
    return OrderDesk(run, blog, entry, protocol).take();
}

} // namespace velloria::blog
