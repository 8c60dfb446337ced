#include "browser/forms/frmBrowser.h"

#include "browser/forms/entry_scripts.h"
#include "browser/forms/page_view.h"
#include "browser/forms/web_page.h"
#include "browser/forms/web_profile.h"
#include "browser/page_address.h"
#include "browser/search_sites.h"
#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "desktop/combo.h"
#include "desktop/command.h"
#include "desktop/icons.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "site/save_html.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMdiArea>
#include <QSignalBlocker>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

constexpr int kMarginBelow = 28; ///< left free below the page
constexpr int kKindRole = Qt::UserRole + 1;

const QString kLoading = u"Webページ表示中..."_s;

/// Adds to the list of a box that somebody may be typing in: the first line of an empty list would take the text's
/// place.
void addToList(QComboBox& box, const QString& text) {
    if (box.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0)
        return;
    QLineEdit& edit = *box.lineEdit();
    const QString typed = edit.text();
    const int caret = edit.cursorPosition();
    const int start = edit.selectionStart();
    const auto length = int(edit.selectionLength());
    const QSignalBlocker blocker(box);
    box.addItem(text);
    if (edit.text() == typed)
        return;
    edit.setText(typed);
    edit.setCursorPosition(caret);
    if (start >= 0)
        edit.setSelection(caret == start ? start + length : start, caret == start ? -length : length);
}

void fillList(QComboBox& box, const QStringList& entries) {
    const QSignalBlocker blocker(box);
    box.clear();
    box.addItems(entries);
    box.setCurrentIndex(-1);
    box.clearEditText();
}

QStringList entriesOf(const QComboBox& box) {
    QStringList entries;
    for (int i = 0; i < box.count(); ++i)
        entries += box.itemText(i);
    return entries;
}

desktop::IconName iconNameOf(FavouriteKind kind) {
    return kind == FavouriteKind::Shortcut ? desktop::IconName::Shortcut : desktop::IconName::Folder;
}

} // namespace

frmBrowser::frmBrowser(desktop::Context& context)
    : MdiChild(context, u"frmBrowser"_s)
    , m_histories(context.session) {
    setWindowTitle(u"Browser"_s);
    auto* contents = new QWidget;
    m_layout = new QVBoxLayout(contents);
    m_layout->setContentsMargins(0, 0, 0, kMarginBelow);
    m_layout->setSpacing(2);
    m_layout->addWidget(makeBar());
    m_layout->addStretch();
    setContents(contents);

    m_site->addItems(searchSiteNames());
    const qint32 site =
        core::Settings(context.session).read(core::SettingsFile::Diary).wideNumber(core::keys::kFindSite).value_or(0);
    m_site->setCurrentIndex(site < m_site->count() ? site : -1);
    HistoryAdd_URL();
    HistoryAdd_Find();
    FillFavorites();
}

frmBrowser::~frmBrowser() {
    desktop::runCommand(m_context.desk, [this] { keep(); });
    delete m_view; // before its profile
}

// ---- the boxes that are typed in

/// The keys of the two boxes that are typed in, before what the key does to the text. A box has the focus itself and
/// hands its events on to its line.
bool frmBrowser::eventFilter(QObject* watched, QEvent* event) {
    if (m_isWaitingForDrawing && event->type() == QEvent::Expose &&
        watched == m_context.mdi->window()->windowHandle()) {
        m_isWaitingForDrawing = false;
        qApp->removeEventFilter(this);
        QTimer::singleShot(0, this, &frmBrowser::startEngine);
    }
    if (watched != m_words && watched != m_address)
        return m_isWaitingForDrawing ? false : MdiChild::eventFilter(watched, event);
    const bool isWords = watched == m_words;
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        desktop::runCommand(m_context.desk, [&] {
            if (isEnter && isWords)
                search();
            else if (isEnter)
                openAddress();
            if (isWords && !key.text().isEmpty())
                rememberWords();
        });
        if (isEnter)
            return true; // or the box would act on it as well
    }
    if (isWords && event->type() == QEvent::InputMethod &&
        !static_cast<const QInputMethodEvent&>(*event).commitString().isEmpty())
        rememberWords();
    return false;
}

void frmBrowser::openAddress() {
    const QUrl url = typedUrl(m_address->currentText());
    if (!url.isValid())
        return;
    m_context.desk.status(kLoading);
    Navigate(QString::fromLatin1(url.toEncoded()));
}

void frmBrowser::search() {
    m_context.desk.status(kLoading);
    Navigate(searchAddress(core::Settings(m_context.session), m_site->currentIndex(), m_words->currentText()));
}

/// With every key, and so with the text as it was before the key.
void frmBrowser::rememberWords() {
    addToList(*m_words, m_words->currentText());
}

void frmBrowser::previewPage() {
    site::SaveHtml(m_context).SaveTmpFile();
    Navigate(core::files::kPreview.in(m_context.session));
}

void frmBrowser::goHome() {
    const QString home = core::Settings(m_context.session).text(core::keys::kBrowserHome);
    Navigate(home.isEmpty() ? core::files::kPreview.in(m_context.session) : home);
}

// ---- histories and favourites

void frmBrowser::HistoryAdd_URL() {
    fillList(*m_address, m_histories.addresses());
}

void frmBrowser::HistoryAdd_Find() {
    fillList(*m_words, m_histories.words());
}

void frmBrowser::keep() {
    m_histories.keepAddresses(entriesOf(*m_address));
    m_histories.keepWords(entriesOf(*m_words));
    core::writeQuietly(m_context.session, core::keys::kFindSite, QString::number(m_site->currentIndex()));
}

void frmBrowser::FillFavorites() {
    QString root = m_context.session.FavoriteFolderPath;
    if (root.endsWith(u'/') || root.endsWith(u'\\'))
        root.chop(1);
    if (m_folder.isEmpty())
        m_folder = root;
    try {
        platform::makeFolder(root);
    } catch (const platform::Failure&) {
        // The box is empty then, and the rest of the window as useful as ever.
    }
    const bool isSorted = core::Settings(m_context.session).isOn(core::keys::kFavoriteSort);
    const QSignalBlocker blocker(*m_favourites);
    m_favourites->clear();
    for (const Favourite& line :
         listFavourites(root, m_folder, isSorted ? FavouriteOrder::Sorted : FavouriteOrder::AsListed)) {
        m_favourites->addItem(desktop::icon(iconNameOf(line.kind), palette()), line.text, line.tag);
        m_favourites->setItemData(m_favourites->count() - 1, int(line.kind), kKindRole);
    }
    m_favourites->setCurrentIndex(-1);
}

void frmBrowser::pickFavourite(int index) {
    desktop::runCommand(m_context.desk, [&] {
        const QString tag = m_favourites->itemData(index).toString();
        switch (FavouriteKind(m_favourites->itemData(index, kKindRole).toInt())) {
        case FavouriteKind::Folder:
            m_folder += core::nativeSeparator() + m_favourites->itemText(index);
            FillFavorites();
            break;
        case FavouriteKind::Up:
            m_folder = tag;
            FillFavorites();
            break;
        case FavouriteKind::Shortcut:
            m_address->setEditText(tag);
            openAddress();
            break;
        }
    });
}

// ---- the page

WebPage* frmBrowser::page() const {
    return m_view ? static_cast<WebPage*>(m_view->page()) : nullptr;
}

WebPage& frmBrowser::startedPage() {
    startEngine();
    return *page();
}

void frmBrowser::Navigate(const QString& address) {
    const QUrl url = pageUrl(address);
    if (!url.isValid() || url.isEmpty() || !isShownScheme(url.scheme()))
        return;
    if (WebPage* shown = page()) {
        shown->navigate(url);
        return;
    }
    m_pending = url;
    waitForDrawing();
}

void frmBrowser::Stop() {
    m_pending.clear();
    if (WebPage* shown = page())
        shown->stop();
}

void frmBrowser::showEvent(QShowEvent* event) {
    MdiChild::showEvent(event);
    waitForDrawing();
}

/// The main window is drawn as soon as the screen has it: what the event loop does next comes after the drawing.
void frmBrowser::waitForDrawing() {
    if (m_view || m_isWaitingForDrawing)
        return;
    const QWindow* window = m_context.mdi->window()->windowHandle();
    if (window && window->isExposed()) {
        QTimer::singleShot(0, this, &frmBrowser::startEngine);
        return;
    }
    m_isWaitingForDrawing = true;
    qApp->installEventFilter(this);
}

std::shared_ptr<QWebEngineProfile> frmBrowser::profile() {
    if (!m_profile)
        m_profile = makeProfile(m_context.session, m_context.desk);
    return m_profile;
}

void frmBrowser::startEngine() {
    if (m_view)
        return;
    m_view = new PageView(m_context);
    m_view->setObjectName(u"WebBrowser"_s);
    m_view->setAccessibleName(u"ページ"_s);
    auto* shown = new WebPage(*profile(), m_context, WebLinks::OpenHere, m_view);
    m_view->setPage(shown);
    m_view->setMinimumSize(1, 1);
    delete m_layout->takeAt(1); // the stretch that kept its place
    m_layout->addWidget(m_view, 1);
    connect(shown, &WebPage::documentComplete, this,
            [this] { desktop::runCommand(m_context.desk, [this] { onDocumentComplete(); }); });
    connect(shown, &WebPage::frameComplete, this, [this] { bDocumentComplete = true; });
    connect(shown, &WebPage::eventNamed, this, &frmBrowser::onEvent);
    connect(shown, &WebPage::addressOpened, this, [this](const QUrl& url) {
        desktop::runCommand(m_context.desk, [&] {
            m_context.desk.status(kLoading);
            Navigate(QString::fromLatin1(url.toEncoded()));
        });
    });
    if (!m_pending.isEmpty())
        shown->navigate(std::exchange(m_pending, {}));
}

/// What else is shown here may be anybody's, and has no say in what is edited.
void frmBrowser::onEvent(const QString& name) {
    const std::optional<EntryName> entry = entryOf(name);
    const QUrl url = page()->url();
    if (!entry || !url.isLocalFile() ||
        !platform::isSameFile(url.toLocalFile(), core::files::kInformationPage.in(m_context.session)))
        return;
    desktop::runCommand(m_context.desk, [&] { m_context.requests.openEntry(entry->day, entry->number); });
}

void frmBrowser::onDocumentComplete() {
    const QUrl url = page()->url();
    m_locationUrl = QString::fromLatin1(url.toEncoded());
    m_locationName = page()->title();
    if (m_locationName.isEmpty())
        m_locationName = url.fileName();
    setWindowTitle(u"Browser / "_s + m_locationName);
    m_address->setEditText(m_locationUrl);
    addToList(*m_address, m_locationUrl);
    m_context.desk.status(u"Webページ表示完了！"_s);
    bDocumentComplete = true;
}

} // namespace velloria::browser
