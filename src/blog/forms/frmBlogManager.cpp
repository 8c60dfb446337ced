#include "blog/forms/frmBlogManager.h"

#include "blog/blog_template.h"
#include "blog/blog_user_data.h"
#include "blog/template_words.h"
#include "core/blog_keys.h"
#include "core/ini_reader.h"
#include "core/keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "desktop/line_box.h"
#include "ui_frmBlogManager.h"

#include <QEvent>
#include <QPointer>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace velloria::blog {

namespace keys = core::keys;

frmBlogManager::frmBlogManager(desktop::Context& context)
    : ToolWindow(context, u"frmBlogManager"_s, Blocks::Nothing, &keys::kBlogManagerPlace)
    , ui(std::make_unique<Ui::frmBlogManager>()) {
    ui->setupUi(this);
    m_fields = {{ui->txtLoginID, keys::blog_user::kLoginID, u"Login ID"_s},
                {ui->txtPassword, keys::blog_user::kPassword, u"Password"_s},
                {ui->txtPostURL, keys::blog_user::kPostURL, u"投稿URL"_s},
                {ui->txtNextURL, keys::blog_user::kNextURL, u"投稿URL2"_s},
                {ui->txtAccessURL, keys::blog_user::kAccessURL, u"閲覧用URL"_s}};
    ui->Btn_Save->setEnabled(false);
    for (const Field& field : m_fields)
        connect(field.box, &QLineEdit::textChanged, this, [this, box = field.box] {
            if (m_isLoading)
                return;
            box->setModified(true); // what a screen reader or the like sets is typed as well
            ui->Btn_Save->setEnabled(true);
        });
    // By whatever hand, a screen reader's too: a save writes the boxes under the name that stands there.
    connect(ui->cmbBlog, &QComboBox::currentIndexChanged, this, &frmBlogManager::showBlog);
    connect(ui->cmbBlog, &QComboBox::activated, this, &frmBlogManager::showBlog); // the same one again, too
    connect(ui->Btn_Save, &QPushButton::clicked, this, [this] { run([this] { Btn_Save_Click(); }); });
    connect(ui->Btn_Close, &QPushButton::clicked, this, &QDialog::reject);
    fillList();
    select(core::Settings(context.session).text(keys::kManagedBlog));
}

frmBlogManager::~frmBlogManager() {
    // Without a selection the list lacked the blog; it is selected again when its template is back.
    if (ui->cmbBlog->currentIndex() >= 0)
        core::writeQuietly(m_context.session, keys::kManagedBlog, ui->cmbBlog->currentText());
}

void frmBlogManager::fillBlogs() {
    const QString selected = ui->cmbBlog->currentIndex() < 0
                                 ? core::Settings(m_context.session).text(keys::kManagedBlog)
                                 : ui->cmbBlog->currentText();
    fillList();
    select(selected);
    ui->Btn_Save->setEnabled(false);
}

void frmBlogManager::readAgain() {
    if (ui->cmbBlog->currentIndex() < 0)
        return;
    const QScopedValueRollback loading(m_isLoading, true);
    run([this] {
        const BlogUserData userData(m_context.session, ui->cmbBlog->currentText());
        for (const Field& field : m_fields) {
            if (field.box->isEnabled() && !field.box->isModified())
                setBox(*field.box, true, userData.value(field.row));
        }
    });
}

void frmBlogManager::fillList() {
    const QSignalBlocker notPickedByAnybody(ui->cmbBlog);
    ui->cmbBlog->clear();
    ui->cmbBlog->addItems(blogNames(m_context.session));
}

void frmBlogManager::select(const QString& blog) {
    const QSignalBlocker shownBelow(ui->cmbBlog);
    ui->cmbBlog->setCurrentIndex(ui->cmbBlog->findText(blog, Qt::MatchExactly | Qt::MatchCaseSensitive));
    showBlog();
}

/// What can't be read is told, and no blog is picked then: a save would write the boxes of another one.
void frmBlogManager::showBlog() {
    const QScopedValueRollback loading(m_isLoading, true);
    bool isShown = false;
    run([&] {
        if (ui->cmbBlog->currentIndex() >= 0) {
            showDataOf(ui->cmbBlog->currentText());
            isShown = true;
        }
    });
    if (!isShown)
        showNone();
    colourBoxes();
}

void frmBlogManager::showDataOf(const QString& blog) {
    const QString file = templateFile(m_context.session, blog);
    refuseHugeTemplate(file);
    const core::IniReader service(file); // not the whole template: one with a fault elsewhere has a login, too
    const auto isUsers = [&](const core::Setting& row) { return service.text(row) == words::kRequired; };
    const bool isPostUsers = isUsers(keys::blog_template::kPostURL);
    const bool isNextUsers = isUsers(keys::blog_template::kNextURL);
    const BlogUserData userData(m_context.session, blog);
    std::vector<QString> values; // all of them before any is shown
    for (const Field& field : m_fields)
        values.push_back(userData.value(field.row));
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        desktop::LineBox* box = m_fields[i].box;
        setBox(*box, (box != ui->txtPostURL || isPostUsers) && (box != ui->txtNextURL || isNextUsers), values[i]);
    }
}

void frmBlogManager::showNone() {
    ui->cmbBlog->setCurrentIndex(-1);
    for (const Field& field : m_fields)
        setBox(*field.box, false, {});
    ui->Btn_Save->setEnabled(false);
}

/// A box that is not the user's is empty.
void frmBlogManager::setBox(desktop::LineBox& box, bool isUsers, const QString& text) {
    box.setEnabled(isUsers);
    box.setText(isUsers ? text : QString());
    box.setCursorPosition(0); // a long address is known by its beginning
}

/// The ground of a box in which nothing can be written is that of a button.
void frmBlogManager::colourBoxes() const {
    QPalette grey;
    grey.setBrush(QPalette::Base, palette().brush(QPalette::Active, QPalette::Button));
    for (const Field& field : m_fields)
        field.box->setPalette(field.box->isEnabled() ? QPalette() : grey);
}

void frmBlogManager::changeEvent(QEvent* event) {
    ToolWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        colourBoxes();
}

void frmBlogManager::Btn_Save_Click() {
    std::vector<std::pair<core::Setting, QString>> values;
    for (const Field& field : m_fields) {
        field.box->commitComposition();
        values.emplace_back(field.row, field.box->text());
        if (!BlogUserData::fits(field.row, field.box->text())) {
            const QPointer<QWidget> box(field.box); // the program may end while a message is open
            m_context.desk.message(platform::MessageKind::Critical, BlogUserData::refusal(field.name));
            if (box)
                box->setFocus();
            return;
        }
    }
    BlogUserData(m_context.session, ui->cmbBlog->currentText()).store(values);
    for (const Field& field : m_fields)
        field.box->setModified(false);
    ui->Btn_Save->setEnabled(false);
}

} // namespace velloria::blog
