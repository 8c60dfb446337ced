#include "blog/blog_run.h"

#include "blog/blog_form.h"
#include "blog/blog_login.h"
#include "blog/blog_switches.h"
#include "blog/posted_entries.h"
#include "blog/web_address.h"
#include "core/blog_keys.h"
#include "platform/failure.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

using platform::MessageKind;

bool isSameOrigin(const QUrl& left, const QUrl& right) {
    const auto port = [](const QUrl& url) { return url.port(url.scheme() == u"https"_s ? 443 : 80); };
    return left.scheme() == right.scheme() && left.host() == right.host() && port(left) == port(right);
}

} // namespace

BlogRun::BlogRun(const core::Run& run, BlogPage& page, const QString& blog, const BlogEntry& entry,
                 std::chrono::milliseconds waitLimit)
    : m_session(run.session)
    , m_run{m_session, run.clock, run.desk}
    , m_page(page)
    , m_blog(blog)
    , m_entry(entry)
    , m_protocol(m_run, blog)
    , m_data(m_session, m_blog)
    , m_driver(page, m_protocol, waitLimit) {}

void BlogRun::run() {
    End end = End::Failed;
    try {
        end = post();
    } catch (const ProgramEnds&) {
        m_protocol.add(u"プログラムの終了のため中止しました。"_s);
        end = End::ProgramEnding;
    } catch (const platform::Failure& failure) {
        m_protocol.add(failure.line());
    } catch (const std::exception& error) {
        m_protocol.add(QString::fromUtf8(error.what()));
    } catch (...) {
        m_protocol.add(u"不明なエラーが起こりました。"_s);
    }
    tell(end);
}

BlogRun::End BlogRun::post() {
    enter(u"初期化エラー"_s);
    m_page.stop();
    std::optional<BlogOrder> order = takeOrder(m_run, m_blog, m_entry, m_protocol);
    if (!order)
        return End::Refused;
    m_order = std::move(*order);

    enter(u"Blog接続処理エラー"_s);
    m_page.beginRun(pageRun());
    const auto running = qScopeGuard([this] { m_page.endRun(); });
    const std::optional<End> end = connect();
    return end ? *end : fillAndSend();
}

/// Up to the posting page; how the run has ended when it is not there.
std::optional<BlogRun::End> BlogRun::connect() {
    m_page.bringToFront();
    m_driver.navigate(m_order.postUrl);
    m_run.desk.status(m_order.blogTemplate.blog + u"に接続中"_s);
    if (const std::optional<PostedEntry> last = lastPost(m_session, m_entry.day, m_entry.number, m_blog))
        m_run.desk.notice(postedNotice(*last, m_blog));
    if (!m_driver.WaitPageComplete())
        return endOfWait();

    enter(u"ログイン状態確認エラー"_s);
    BlogLogin login(m_order.blogTemplate, m_data, m_run.desk, m_driver);
    const bool isLoginNeeded = login.isNeeded();
    enter(u"ログイントライエラー"_s);
    if (isLoginNeeded) {
        m_run.desk.status(m_order.blogTemplate.blog + u"にログイン中"_s);
        if (!login.logIn(m_order.postUrl, m_order.nextUrl))
            return endOfWait();
    }

    enter(u"ログイン状態確認エラー"_s);
    return login.isNeeded() ? std::optional(End::NoPostingPage) : std::nullopt;
}

BlogRun::End BlogRun::fillAndSend() {
    BlogForm form(m_order.blogTemplate, m_driver);
    BlogSwitches switches(m_order.blogTemplate, m_driver);
    m_run.desk.status(m_order.blogTemplate.blog + u"に投稿中"_s);
    form.open(); // still in the stage of the login test

    enter(u"タイトル挿入エラー"_s);
    form.writeTitle(m_order.title);
    enter(u"本文挿入エラー"_s);
    form.writeBody(m_order.body);
    enter(u"カテゴリ/ジャンル挿入エラー"_s);
    form.chooseGenre(m_order.genre);
    enter(u"公開設定エラー"_s);
    switches.setUnderWrite(m_order.isPublic);
    enter(u"コメント受け入れ設定エラー"_s);
    switches.setAcceptComment(m_order.acceptsComments);
    enter(u"トラックバック受け入れ設定エラー"_s);
    switches.setAcceptPing(m_order.acceptsTrackbacks);

    enter(u"投稿ボタンクリックエラー"_s);
    form.post(m_order.isPublic);
    m_hasEmptied = m_page.hasEmptied();
    if (m_hasEmptied)
        m_protocol.add(u"ページが、書き込まれた本文を空にして送りました。"_s);
    if (!m_driver.WaitPageComplete())
        return endOfWait();
    m_problem = m_page.problem();

    enter(u"確認画面クリックエラー"_s);
    form.confirm(); // nobody waits for what comes of it
    return End::Posted;
}

void BlogRun::enter(const QString& stage) {
    m_stage = stage;
    m_protocol.add(u"段階: "_s + stage);
}

BlogRun::End BlogRun::endOfWait() const {
    return m_driver.lastEnd() == PageEnd::TimedOut ? End::TimedOut : End::ProgramEnding;
}

PageRun BlogRun::pageRun() const {
    return {.raisesEvents = m_order.blogTemplate.raisesEvents,
            .credentials = [this](const QUrl& address) { return credentials(address); }};
}

/// The user's login is for the server of the posting page alone. Asked from within the browser: nothing is thrown.
Credentials BlogRun::credentials(const QUrl& address) const {
    try {
        if (isSameOrigin(address, webAddress(m_order.postUrl)))
            return {m_data.value(core::keys::blog_user::kLoginID), m_data.value(core::keys::blog_user::kPassword)};
    } catch (const platform::Failure&) {
        // then the user types it
    }
    return {};
}

void BlogRun::tell(End end) {
    const auto fail = [this](const QString& text) {
        m_run.desk.status(u"日記投稿失敗！"_s);
        if (!text.isEmpty())
            m_run.desk.detailedMessage(MessageKind::Critical, text, m_protocol.text());
    };
    switch (end) {
    case End::Posted:
        return tellPosted();
    case End::Refused: // whoever refused has told it
        return;
    case End::NoPostingPage:
        return m_run.desk.detailedMessage(MessageKind::Information, u"投稿画面にならないので、投稿を中止します"_s,
                                          m_protocol.text());
    case End::Failed:
        return fail(u"エラーが発生しました。\r\nError_Code:"_s + m_stage);
    case End::TimedOut: // the words say twice the time of the limit
        return fail(u"Blog投稿失敗！\r\nタイムアウト(60秒)です。"_s);
    case End::ProgramEnding: // a box would hold up the end
        return fail({});
    }
}

void BlogRun::tellPosted() {
    platform::Desk& desk = m_run.desk;
    const QString refusal = m_problem.isEmpty() ? remember() : QString();
    m_protocol.add(m_problem.isEmpty() ? u"投稿しました。"_s : u"投稿への応答はエラーのページです: "_s + m_problem);
    desk.status(u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
    const QString text = u"Blog投稿完了！\r\n画像ファイルは手動でアップロードしてください。"_s;
    if (m_problem.isEmpty() && refusal.isEmpty() && !m_hasEmptied)
        desk.message(MessageKind::Information, text);
    else
        desk.detailedMessage(MessageKind::Information, text, m_protocol.text());
    if (!refusal.isEmpty())
        desk.notice(u"投稿しましたが、投稿の記録を残せませんでした: "_s + refusal);
    if (m_hasEmptied)
        desk.notice(u"投稿しましたが、ページが本文を空にして送りました。ブログの本文を確かめてください。"_s);
}

/// The post is done, whatever becomes of its record: a refusal is returned.
QString BlogRun::remember() {
    try {
        rememberPost(m_run, m_entry, m_blog);
        return {};
    } catch (const platform::Failure& failure) {
        m_protocol.add(failure.line());
        return failure.line();
    }
}

} // namespace velloria::blog
