#include "site/forms/frmSetting.h"

#include "blog/forms/frmBlogManager.h"
#include "browser/forms/frmBrowser.h"
#include "core/keys.h"
#include "core/program_keys.h"
#include "core/site_keys.h"
#include "ui_frmSetting.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

namespace keys = core::keys;

constexpr int kMostDays = 31;

/// A term that no month has means all days of one, as 0 does.
QString shownTerm(const QString& stored) {
    const int days = stored.toInt();
    return QString::number(days >= 1 && days <= kMostDays ? days : kMostDays);
}

QString shownTopLink(const QString& stored) {
    return stored == u"TopPage" ? stored : u"PageTop"_s;
}

} // namespace

frmSetting::frmSetting(desktop::Context& context)
    : SettingsDialog(context, u"frmSetting"_s, Blocks::Nothing, &keys::kFramePlace)
    , ui(std::make_unique<Ui::frmSetting>()) {
    ui->setupUi(this);
    for (int days = 1; days <= kMostDays; ++days)
        ui->cmbDiaryTerm->addItem(QString::number(days));
    setUp(rows(), {ui->Btn_OK, ui->Btn_Cancel, ui->Btn_Apply});
    connectControls();
    for (QLineEdit* box : findChildren<QLineEdit*>())
        box->setCursorPosition(0); // a long address is known by its beginning
}

frmSetting::~frmSetting() = default;

std::vector<desktop::SettingsRow> frmSetting::rows() const {
    const desktop::Choice topLink{{{ui->optTopLink_PageTop, u"PageTop"_s}, {ui->optTopLink_TopPage, u"TopPage"_s}}};
    return {
        {ui->chkDiaryDivide, keys::divide::kDiaryDivide, {}},
        {ui->cmbDiaryTerm, keys::divide::kDiaryTerm, {shownTerm, {}}},
        {ui->chkDiaryOnTop, keys::divide::kDiaryOnTop, {}},
        {ui->chkLogDivide, keys::divide::kLogDivide, {}},
        {topLink, keys::divide::kTopLink, {shownTopLink, {}}},
        {ui->chkUseFileName2Day, keys::divide::kUseFileName2Day, {}},

        {ui->chkUseFrame, keys::frame::kFrameOn, {}},
        {ui->txtCalenderFrameSize, keys::frame::kCalenderFrameSize, {}},
        {ui->txtFRAMEBORDER, keys::frame::kBorder, {}},
        {ui->chkScrolling, keys::frame::kScrolling, {}},
        {ui->chkResize, keys::frame::kResize, {}},

        {ui->chkUseRSS, keys::rss::kRSSOn, {}},
        {ui->txtRSS_Title, keys::rss::kTitle, {}},
        {ui->txtRSS_HPURL, keys::rss::kHPURL, {}},
        {ui->txtRSS_DiaryURL, keys::rss::kDiaryURL, {}},
        {ui->txtRSS_Description, keys::rss::kDescription, {}},
        {ui->txtRSS_ManagingAuthor, keys::rss::kManagingAuthor, {}},
        {ui->txtRSS_WebMaster, keys::rss::kWebMaster, {}},
        {ui->txtATOM_Author, keys::rss::kAuthor, {}},

        {ui->chkUseHaloScan, keys::halo_scan::kHaloScanOn, {}},
        {ui->txtHaloScanUserName, keys::halo_scan::kUserName, {}},

        {ui->chkBlog_Status, keys::blog::kStatus, {}},
        {ui->chkBlog_AcceptComment, keys::blog::kAcceptComment, {}},
        {ui->chkBlog_AcceptTrackBack, keys::blog::kAcceptTrackBack, {}},
        {ui->chkBlog_PandBRTag, keys::blog::kPandBRTag, {}},
    };
}

void frmSetting::connectControls() {
    const auto isDivided = [this] { return ui->chkDiaryDivide->isChecked(); };
    enableWhile({ui->labelDiaryTerm, ui->cmbDiaryTerm, ui->chkDiaryOnTop}, isDivided);
    enableWhile({ui->chkUseFileName2Day},
                [this, isDivided] { return isDivided() && ui->cmbDiaryTerm->currentText() == u"1"; });
    enableWhile({ui->lblCalenderFrameSize, ui->txtCalenderFrameSize, ui->lblFRAMEBORDER, ui->txtFRAMEBORDER,
                 ui->chkScrolling, ui->chkResize},
                [this] { return ui->chkUseFrame->isChecked(); });
    connect(ui->Btn_BlogManager, &QPushButton::clicked, this,
            [this] { run([this] { m_context.windows.get<blog::frmBlogManager>().showWindow(); }); });
    connect(ui->lblURL, &QLabel::linkActivated, this, [this] {
        run([this] {
            m_context.windows.get<browser::frmBrowser>().showChild();
            m_context.desk.navigate(core::Settings(m_context.session).text(keys::kHaloScanHome));
        });
    });
}

} // namespace velloria::site
