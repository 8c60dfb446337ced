#include "editor/forms/blog_bar.h"

#include "blog/blog_template.h"
#include "blog/forms/engine_page.h"
#include "blog/forms/frmBlogManager.h"
#include "blog/posted_entries.h"
#include "core/keys.h"
#include "core/settings.h"
#include "desktop/context.h"
#include "desktop/icons.h"

#include <QPushButton>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

/// In the order of the list.
enum Action { kPost, kView, kManage };

} // namespace

BlogBar::BlogBar(desktop::Context& context, desktop::Combo& blogs, desktop::Combo& actions, QPushButton& button)
    : QObject(&button)
    , m_context(context)
    , m_day(context.windows.get<OpenDay>())
    , m_blogs(blogs)
    , m_actions(actions)
    , m_button(button)
    , m_tipWithoutBlog(button.toolTip()) {
    fillBlogs();
    m_actions.addItems({u"投稿"_s, u"閲覧"_s, u"管理"_s});
    for (const QComboBox* box : {&m_blogs, &m_actions})
        connect(box, &QComboBox::currentIndexChanged, this, &BlogBar::refresh);
    for (const auto shown : {&OpenDay::numbersChanged, &OpenDay::closed})
        connect(&m_day, shown, this, &BlogBar::refresh);
    connect(&m_day, &OpenDay::entryShown, this, &BlogBar::refresh);
    m_button.installEventFilter(this);
    refresh();
}

bool BlogBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_button && event->type() == QEvent::PaletteChange)
        refresh();
    return QObject::eventFilter(watched, event);
}

void BlogBar::fillBlogs() {
    const QString selected = m_blogs.currentIndex() < 0
                                 ? core::Settings(m_context.session).text(core::keys::kSelectedBlog)
                                 : m_blogs.currentText();
    m_blogs.clear();
    m_blogs.addItems(blog::blogNames(m_context.session));
    m_blogs.setCurrentIndex(m_blogs.findText(selected, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

void BlogBar::Btn_BlogControl_Click() {
    switch (m_actions.currentIndex()) {
    case kPost:
        return PostBlog(selectedBlog());
    case kView:
        return ViewBlog();
    case kManage:
        return BlogManagement();
    default:
        return;
    }
}

void BlogBar::PostBlog(const QString& blog) {
    drive(blog, [&](blog::BlogPost& post) { post.PostBlog(blog, openEntry()); });
    refresh(); // it may be posted now
}

void BlogBar::ViewBlog() {
    const QString blog = selectedBlog();
    drive(blog, [&](blog::BlogPost& post) { post.ViewBlog(blog); });
}

void BlogBar::BlogManagement() {
    const QString blog = selectedBlog();
    drive(blog, [&](blog::BlogPost& post) { post.BlogManagement(blog); });
}

/// One routine for all three: each would lead the page of another one away under it.
void BlogBar::drive(const QString& blog, const std::function<void(blog::BlogPost&)>& action) {
    if (blog.isEmpty()) {
        m_context.desk.status(u"ブログが選択されていません。"_s);
        return;
    }
    m_context.runs.run(desktop::LongRoutine::PostBlog, [&] {
        blog::EnginePage page(m_context);
        blog::BlogPost post(m_context, page, waitLimit);
        action(post);
    });
    if (auto* manager = m_context.windows.find<blog::frmBlogManager>())
        manager->readAgain(); // the user may have been asked
}

blog::BlogEntry BlogBar::openEntry() {
    const std::optional<store::Entry> typed = m_day.typed();
    if (!typed)
        return {};
    return {true, typed->day, typed->number, typed->title, typed->contents, typed->genre, typed->isPrivate};
}

QString BlogBar::tip() const {
    const QString blog = selectedBlog();
    if (blog.isEmpty())
        return m_tipWithoutBlog;
    if (m_actions.currentIndex() == kView)
        return blog + u"を閲覧します"_s;
    if (m_actions.currentIndex() == kManage)
        return blog + u"の管理画面を開きます"_s;
    const QString tip = blog + u"に投稿します"_s;
    const auto last = m_day.isOpen()
                          ? blog::lastPost(m_context.session, m_context.session.EnterDay, m_day.number(), blog)
                          : std::nullopt;
    return last ? tip + u'\n' + blog::postedNotice(*last, blog) : tip;
}

void BlogBar::refresh() {
    const QString shown = tip();
    // A name or a title that looks like a tag is none; a long line is wrapped only in text of that kind.
    const bool isPlain = !shown.contains(u'\n') && !Qt::mightBeRichText(shown);
    m_button.setToolTip(isPlain ? shown : Qt::convertFromPlainText(shown, Qt::WhiteSpaceNormal));
    m_button.setAccessibleDescription(shown);
    using desktop::IconName;
    constexpr IconName kPictures[] = {IconName::PostBlog, IconName::ViewBlog, IconName::ManageBlog};
    m_button.setIcon(desktop::icon(kPictures[std::max(m_actions.currentIndex(), 0)], m_button.palette()));
}

} // namespace velloria::editor
