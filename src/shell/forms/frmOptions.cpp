#include "shell/forms/frmOptions.h"

#include "convert/password_text.h"
#include "core/keys.h"
#include "core/numbers.h"
#include "core/path_names.h"
#include "core/stored_name.h"
#include "desktop/leave_check.h"
#include "desktop/line_box.h"
#include "publish/upload_settings.h"
#include "shell/data_folder.h"
#include "shell/forms/connection_check.h"
#include "shell/forms/folder_change.h"
#include "shell/forms/password_box.h"
#include "ui_frmOptions.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::shell {

namespace keys = core::keys;
using platform::MessageKind;

namespace {

const QString kSounds = u"Sound Files(*.wav,*.mid,*.mp2)|*.wav;*.mid;*.mp2|WAV Files(*.wav)|*.wav|"
                        "MIDI Files(*.mid)|*.mid|MP2 Files(*.mp2)|*.mp2|ALL Files(*.*)|*.*|"_s;

/// A size that is none, or not above 0, is the usual one.
QString keptFontSize(const QString& text) {
    return core::numericValue(text).value_or(0) > 0 ? text : u"12"_s;
}

// A tick for what the program takes as yes: somebody may have written another number by hand.
const desktop::SettingsHooks kUnlessZero = desktop::onUnlessZero(u"1"_s);
const desktop::SettingsHooks kAboveZero{[](const QString& number) { return number.toInt() > 0 ? u"1"_s : u"0"_s; }, {}};

} // namespace

frmOptions::frmOptions(desktop::Context& context)
    : SettingsDialog(context, u"frmOptions"_s, Blocks::Nothing, &keys::kPreferencePlace)
    , ui(std::make_unique<Ui::frmOptions>())
    , m_shownFolder(context.session.DataPath) {
    ui->setupUi(this);
    desktop::keepShort(*ui->txtMakeDiaryFontSize, 6);
    makePasswordBox(*ui->txtFTP_Pass);
    ui->txtFTP_Pass->setEchoMode(QLineEdit::Normal); // the button beside it hides the password
    fitToTexts();
    connectButtons();
    setUp(rows(), {ui->Btn_OK, ui->Btn_Cancel, ui->Btn_Apply});
    enableWhile({ui->Btn_PlaySound}, [this] { return !ui->txtFTPCompleteSound->text().isEmpty(); });
    new desktop::LeaveCheck(*ui->txtMakeDiaryFontSize, *ui->Btn_Cancel,
                            [this] { run([this] { txtMakeDiaryFontSize_LostFocus(); }); });
    new ConnectionCheck(context, *ui->Btn_TestFTP, *ui->labelFTP_Test, [this] {
        const auto tls = ui->optTLS_Off->isChecked()           ? publish::Tls::Off
                         : ui->optTLS_WhenOffered->isChecked() ? publish::Tls::WhenOffered
                                                               : publish::Tls::Required;
        return TriedAccount{
            {ui->txtFTP_URL->text(), ui->txtFTP_ID->text(), ui->txtFTP_Pass->text(), ui->chkFTP_PASV->isChecked(), tls},
            ui->txtFTP_Folder->text()};
    });
}

frmOptions::~frmOptions() = default;

std::vector<desktop::SettingsRow> frmOptions::rows() const {
    const desktop::SettingsHooks scrambled{convert::passwordFromSetting, convert::EncryptPassword};
    const auto tlsNumber = [](const QString& stored) { return QString::number(int(publish::tlsOf(stored))); };
    return {
        {ui->chkOpenWindowMaximize, keys::kWindowMaximize, {}},
        {ui->chkShowStartUpForm, keys::kShowStartUpForm, {}},
        {desktop::Choice{{{ui->optOpenWindowPos_Std, u"1"_s},
                          {ui->optOpenWindowPos_Saved, u"2"_s},
                          {ui->optOpenWindowPos_Nothing, u"0"_s}}},
         keys::kWindowPosition,
         {}},
        {ui->txtSaveFolder, keys::kDataPath, {core::withSeparator, {}}},
        {ui->chkClipWithHTML, keys::kClipWithHTML, kAboveZero},
        {desktop::Choice{{{ui->optMnuLanguageJap, u"Japanese"_s}, {ui->optMnuLanguageEng, u"English"_s}}},
         keys::kMenuLanguage,
         {}},
        {ui->txtFTP_ID, keys::kFtpId, {}},
        {ui->txtFTP_Pass, keys::kFtpPass, scrambled},
        {ui->txtFTP_URL, keys::kFtpUrl, {}},
        {ui->txtFTP_Folder, keys::kFtpStartFolder, {}},
        {ui->chkHTMLOnlyUp, keys::kHtmlOnlyUpload, kUnlessZero},
        {ui->txtFTPCompleteSound, keys::kSoundFile, {}},
        {ui->chkFTP_PASV, keys::kFtpPassive, kUnlessZero},
        {ui->chkFTP_PING, keys::kFtpPing, kUnlessZero},
        {ui->chkFavoriteSort, keys::kFavoriteSort, {}},
        {ui->chkFindHist, keys::kFindHistory, {}},
        {ui->chkURLHist, keys::kUrlHistory, {}},
        {ui->txtMakeDiaryFontSize, keys::kContentsFontSize, {{}, keptFontSize}},
        {ui->txtPtagAdd, keys::kPTagAdd, {}},
        {ui->chkRealtimeCust, keys::kRealTime, {}},
        {desktop::Choice{{{ui->optTLS_Off, u"0"_s}, {ui->optTLS_WhenOffered, u"1"_s}, {ui->optTLS_Required, u"2"_s}}},
         keys::kTls,
         {tlsNumber, {}}},
    };
}

void frmOptions::connectButtons() {
    connect(ui->BtnOpenFolder, &QPushButton::clicked, this, [this] { run([this] { chooseFolder(); }); });
    connect(ui->Btn_OpenFolder_FTP, &QPushButton::clicked, this, [this] { run([this] { chooseSound(); }); });
    connect(ui->Btn_PlaySound, &QPushButton::clicked, this,
            [this] { run([this] { m_context.desk.sound(publish::soundCommand(ui->txtFTPCompleteSound->text())); }); });
    connect(ui->Btn_HidePass, &QPushButton::toggled, this, [this](bool isHidden) {
        ui->txtFTP_Pass->setEchoMode(isHidden ? QLineEdit::Password : QLineEdit::Normal);
    });
}

/// As wide as the longest sentence where the screen has room for it, and high enough for a server with much to say.
void frmOptions::fitToTexts() {
    constexpr int kLines = 2;
    ui->labelFTP_Test->setMinimumHeight(kLines * ui->labelFTP_Test->fontMetrics().lineSpacing());
    const int width = ui->labelTLS_Required->fontMetrics().horizontalAdvance(ui->labelTLS_Required->text());
    ui->buttonSpacer->changeSize(width - ui->Btn_OK->sizeHint().width(), 0, QSizePolicy::Expanding);
}

/// With what the next start will read. What is no path leads nowhere, below a file: it must not lead to whatever lies
/// in the folder that the program was started from, or in the root.
QString frmOptions::newDataPath() const {
    const QString folder = folderOfSetting(core::keptOfPath(ui->txtSaveFolder->text()));
    return folder.isEmpty() ? core::withSeparator(m_context.session.DiaryIniFile) : folder;
}

bool frmOptions::isFolderThere() const {
    const QString folder = folderOfSetting(core::keptOfPath(ui->txtSaveFolder->text()));
    return !folder.isEmpty() && QFileInfo(folder).isDir();
}

void frmOptions::chooseFolder() {
    const std::optional<QString> folder =
        m_context.desk.choosePath({platform::PathMode::Folder, u"フォルダの選択"_s, {}, ui->txtSaveFolder->text()});
    if (!folder || folder->isEmpty() || !mayBeDataFolder(*folder, m_context.desk))
        return;
    const QString name = QDir::toNativeSeparators(*folder);
    ui->txtSaveFolder->setText(core::fitsSetting(name) ? name : core::withSeparator(name)); // a blank at its end stays
}

void frmOptions::chooseSound() {
    const QString folder = core::GetParentFolder(ui->txtFTPCompleteSound->text());
    const std::optional<QString> file =
        m_context.desk.choosePath({platform::PathMode::Open, u"サウンドファイルの選択"_s, kSounds, folder});
    if (file && !file->isEmpty())
        ui->txtFTPCompleteSound->setText(QDir::toNativeSeparators(*file));
}

void frmOptions::txtMakeDiaryFontSize_LostFocus() {
    const std::optional<double> size = core::numericValue(ui->txtMakeDiaryFontSize->text());
    if (!size) {
        m_context.desk.message(MessageKind::Critical, u"不正な文字が入力されました。半角数字を入力してください。"_s);
        ui->TabStrip1->setCurrentWidget(ui->pageWriting);
        ui->txtMakeDiaryFontSize->setFocus();
    } else if (*size <= 0) {
        ui->txtMakeDiaryFontSize->setText(keptFontSize({}));
    }
}

bool frmOptions::mayApply() {
    if (newDataPath() == m_context.session.DataPath)
        return true;
    if (m_context.runs.isAnyRunning()) { // it would find half of its files in the one folder and half in the other
        m_context.desk.message(MessageKind::Critical, u"通信が終わってから、データ保存先フォルダを変えてください。"_s);
        return false;
    }
    return mayBeDataFolder(ui->txtSaveFolder->text(), m_context.desk);
}

/// A folder that can't take the working folders is refused before anything is written.
void frmOptions::write(const core::SettingsChange& change) {
    core::Session& session = m_context.session;
    core::Session changed = session;
    changed.DataPath = newDataPath();
    const QString notice = isFolderThere() ? makeWorkingFolders(changed) : QString();
    SettingsDialog::write(change);
    session.DataPath = changed.DataPath;
    if (!notice.isEmpty())
        m_context.desk.notice(notice);
}

void frmOptions::applied() {
    m_context.requests.setMenuBarString();
    const QString& folder = m_context.session.DataPath;
    m_isFolderLeft = m_isFolderLeft || folder != m_shownFolder;
    if (m_isFolderLeft && !isFolderThere())
        leaveDataFolder(m_context, m_shownFolder);
    else if (std::exchange(m_isFolderLeft, false))
        followDataFolder(m_context, std::exchange(m_shownFolder, folder));
}

bool frmOptions::mayClose() {
    if (isFolderThere())
        return true;
    m_context.desk.message(MessageKind::Critical,
                           u"「データ保存先フォルダ」が不正です。有効なフォルダを指定して下さい。"_s);
    return false;
}

} // namespace velloria::shell
