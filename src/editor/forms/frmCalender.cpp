#include "editor/forms/frmCalender.h"

#include "core/day_key.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "desktop/command.h"
#include "desktop/form_keys.h"
#include "editor/forms/blog_bar.h"
#include "editor/forms/frmContents.h"
#include "platform/failure.h"
#include "site/delete_command.h"
#include "site/forms/frmFind.h"
#include "ui_frmCalender.h"

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

QDate dateOf(const QString& day) {
    return QDate::fromString(day, u"yyyy/MM/dd");
}

QSet<QDate> datesOf(const QStringList& days) {
    QSet<QDate> dates;
    for (const QString& day : days)
        dates.insert(dateOf(day));
    return dates;
}

} // namespace

frmCalender::frmCalender(desktop::Context& context)
    : MdiChild(context, u"frmCalender"_s)
    , ui(std::make_unique<Ui::frmCalender>())
    , m_day(context.windows.get<OpenDay>()) {
    auto* page = new QWidget;
    page->setObjectName(u"frmCalenderPage"_s);
    ui->setupUi(page);
    setContents(page);
    setWindowTitle(u"カレンダー"_s);
    resize(ownSize());
    m_blogBar = new BlogBar(context, *ui->cmbBlog, *ui->cmbBlogAction, *ui->Btn_BlogControl);
    const auto onClick = [this](QPushButton* button, void (frmCalender::*action)()) {
        connect(button, &QPushButton::clicked, this,
                [=, this] { desktop::runCommand(m_context.desk, [=, this] { (this->*action)(); }); });
    };
    onClick(ui->Btn_New, &frmCalender::Btn_New_Click);
    onClick(ui->Btn_Delete, &frmCalender::Btn_Delete_Click);
    onClick(ui->Btn_Find, &frmCalender::Btn_Find_Click);
    onClick(ui->Btn_BlogControl, &frmCalender::Btn_BlogControl_Click);
    connect(ui->Calender, &desktop::MonthView::dateClicked, this,
            [this](const QDate& date) { desktop::runCommand(m_context.desk, [&] { Calender_DateClick(date); }); });
    connect(ui->Calender, &desktop::MonthView::monthShown, this, &frmCalender::markDays);
    connect(&m_day, &OpenDay::dayOpened, this, [this](const QString& day, const store::DaysWithEntries& daysAround) {
        const QDate date = dateOf(day);
        {
            const QSignalBlocker read(ui->Calender); // its page comes with the days to mark
            ui->Calender->setValue(date);
        }
        if (date.isValid()) // a day that is none, which an import may have left, turns no page
            mark(daysAround);
        else
            markDays();
    });
    connect(&m_day, &OpenDay::diaryChanged, this, &frmCalender::markDays);
    constexpr int kMinuteMs = 60'000;
    connect(&m_minute, &QTimer::timeout, this, [this] { ui->Calender->setToday(m_context.clock.now().date()); });
    m_minute.start(kMinuteMs);
    ui->Btn_New->setToolTip(desktop::tipWithKeys(ui->Btn_New->toolTip(), u"Ctrl+N"_s));
    ui->Btn_Find->setToolTip(desktop::tipWithKeys(ui->Btn_Find->toolTip(), u"Ctrl+F"_s));
    markDays();
}

frmCalender::~frmCalender() {
    ui->Calender->disconnect(this); // it loses the focus on the way out, and turns back its page for that
    // Without a selection the list lacked the blog; it is selected again when its template is back.
    if (ui->cmbBlog->currentIndex() >= 0)
        core::writeQuietly(m_context.session, core::keys::kSelectedBlog, ui->cmbBlog->currentText());
}

QSize frmCalender::ownSize() const {
    // The editor's standard place begins right below and is as wide.
    constexpr QSize kUsualSize(279, 214);
    return kUsualSize.expandedTo(neededSize());
}

/// Smaller, it would lose its buttons; larger than this, it would only hide the other windows.
void frmCalender::fitToFont() {
    keepWithin(neededSize(), 2 * ownSize());
}

void frmCalender::showEvent(QShowEvent* event) {
    MdiChild::showEvent(event);
    fitToFont();
}

void frmCalender::changeEvent(QEvent* event) {
    MdiChild::changeEvent(event);
    const bool isFont = event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (isFont && widget()) // after it, for the contents hear of it later
        QMetaObject::invokeMethod(this, &frmCalender::fitToFont, Qt::QueuedConnection);
}

void frmCalender::Calender_DateClick(const QDate& date) {
    m_context.windows.get<frmContents>().day().openDay(core::dayKey(date));
}

void frmCalender::Btn_New_Click() {
    m_context.windows.get<frmContents>().day().openNewEntry();
}

void frmCalender::Btn_Delete_Click() {
    if (!m_day.isOpen()) {
        m_context.desk.message(platform::MessageKind::Information,
                               u"削除する日記が選択されていないので、削除を中止します。"_s);
        return;
    }
    site::deleteCommand(m_context, m_context.session.EnterDay, m_day.number(), [this] { m_day.deleteEntry(); });
}

void frmCalender::Btn_Find_Click() {
    m_context.windows.get<site::frmFind>().showWindow();
}

void frmCalender::showDay(const QDate& day) {
    const QDate shown = ui->Calender->shownMonth();
    ui->Calender->setValue(day);
    if (ui->Calender->shownMonth() == shown) // else the turned page has done so
        markDays();
}

void frmCalender::markDays() {
    store::DaysWithEntries days;
    try {
        days = store::DiaryStore(m_context).daysAround(core::monthOf(core::dayKey(ui->Calender->shownMonth())));
    } catch (const platform::Failure&) {
        days = {}; // turning a page is no occasion for a box
    }
    mark(days);
}

void frmCalender::mark(const store::DaysWithEntries& days) {
    ui->Calender->setToday(m_context.clock.now().date());
    ui->Calender->setMarkedDays({datesOf(days.all), datesOf(days.withPublic)});
}

void frmCalender::Btn_BlogControl_Click() {
    m_blogBar->Btn_BlogControl_Click();
}

void frmCalender::PostBlog(const QString& blog) {
    m_blogBar->PostBlog(blog);
}

void frmCalender::ViewBlog() {
    m_blogBar->ViewBlog();
}

void frmCalender::BlogManagement() {
    m_blogBar->BlogManagement();
}

QString frmCalender::selectedBlog() const {
    return m_blogBar->selectedBlog();
}

void frmCalender::fillBlogs() {
    m_blogBar->fillBlogs();
}

} // namespace velloria::editor
