// What the commands of the main window's menus do.
#include "browser/forms/frmBrowser.h"
#include "convert/forms/frmHTML2TXTSetting.h"
#include "convert/password_text.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "desktop/clipboard.h"
#include "desktop/command.h"
#include "desktop/twips.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "exchange/forms/frmDeleteImportDiary.h"
#include "exchange/forms/frmExport.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/plugin.h"
#include "registers/forms/frmResistFiles.h"
#include "registers/forms/frmResistLogs.h"
#include "shell/forms/arrangement.h"
#include "shell/forms/frmAbout.h"
#include "shell/forms/maker_pages.h"
#include "shell/forms/MDIFormTop.h"
#include "site/forms/frmFind.h"
#include "site/forms/frmSaveLog.h"

#include <QMenu>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace velloria::shell {

using browser::frmBrowser;
using editor::frmCalender;
using editor::frmContents;
using platform::MessageKind;

void MDIFormTop::connectCommands() {
    for (const MenuRow& row : menuRows()) {
        QAction* action = command(row.name);
        if (!action->isSeparator() && !action->menu())
            onCommand(row.name, [this, name = QString(row.name)] { tellNotYetThere(name); });
    }
    connectFileCommands();
    connectDiaryCommands();
    connectToolCommands();
    connectNetworkCommands();
    connectWindowCommands();
    connectPopUpCommands();
}

void MDIFormTop::connectFileCommands() {
    onCommand(u"mnu_DiaryfromClipboard_UseFormattedText"_s,
              [this] { importClipboard(&exchange::ClipboardImport::ImportFormattedClipboard); });
    onCommand(u"mnu_DiaryfromClipboard_UsePlainText"_s,
              [this] { importClipboard(&exchange::ClipboardImport::ImportPlainClipboard); });
    const auto save = [this] { saveHtml(&site::SaveHtml::saveCommand); };
    onCommand(u"MnuSaveHTML"_s, save);
    onCommand(u"MnuSaveHTML_D"_s, save);
    onCommand(u"MnuSaveHTMLAS"_s, [this] { saveHtml(&site::SaveHtml::saveAsCommand); });
    onCommand(u"MnuTextExport"_s, [this] { m_context.windows.get<exchange::frmExport>().showWindow(); });
    onCommand(u"MnuMakeLog"_s, [this] { m_context.windows.get<site::frmSaveLog>().showWindow(); });
    onCommand(u"MnuExit"_s, [this] { close(); });
}

void MDIFormTop::connectDiaryCommands() {
    onCommand(u"MnuWriteDiary"_s,
              [this] { m_context.windows.get<frmCalender>().Calender_DateClick(m_context.clock.now().date()); });
    onCommand(u"MnuAddDiary"_s, [this] { m_context.windows.get<frmCalender>().Btn_New_Click(); });
    onCommand(u"MnuDeleteDiary"_s, [this] { m_context.windows.get<frmCalender>().Btn_Delete_Click(); });
    onCommand(u"MnuDeleteImportDiary"_s,
              [this] { m_context.windows.get<exchange::frmDeleteImportDiary>().showWindow(); });
    onCommand(u"MnuSaveDiary"_s, [this] { m_context.windows.get<frmContents>().Btn1Click_ToolBar(); });
    onCommand(u"MnuFindDiary"_s, [this] { m_context.windows.get<site::frmFind>().showWindow(); });
    onCommand(u"MnuViewOldDiary"_s, [this] { m_context.windows.get<frmContents>().picPrevDiaryExist_Click(); });

    m_restoreDraft = new QAction(u"下書きを復元"_s, this);
    m_restoreDraft->setObjectName(u"MnuRestoreDraft"_s);
    m_restoreDraft->setVisible(false);
    connect(m_restoreDraft, &QAction::triggered, this, [this] {
        desktop::runCommand(m_context.desk, [this] { m_context.windows.get<frmContents>().day().restoreDraft(); });
    });
    QMenu* diary = command(u"MnuDiary"_s)->menu();
    diary->insertAction(command(u"MnuMinus12"_s), m_restoreDraft);
    m_contentsPopUp->addAction(m_restoreDraft);
    connect(diary, &QMenu::aboutToShow, this, &MDIFormTop::offerDraft);
}

/// The draft that a killed run left can be taken until it is taken or the entry is saved.
void MDIFormTop::offerDraft() {
    m_restoreDraft->setVisible(m_context.windows.get<editor::OpenDay>().hasDraft());
}

void MDIFormTop::connectToolCommands() {
    onCommand(u"mnuVellMemo"_s, [this] { mnuVellMemo(); });
    onCommand(u"ResistLogs"_s, [this] { m_context.windows.get<registers::frmResistLogs>().showWindow(); });
    onCommand(u"ResistOtherFiles"_s, [this] { m_context.windows.get<registers::frmResistFiles>().showWindow(); });
    onCommand(u"MnuVellInfo"_s, [this] { MnuVellInfo(); });
    onCommand(u"MnuReConstructionGenre"_s, [this] {
        m_context.windows.get<frmContents>().day().MakeGenretxt();
        m_context.desk.status(u"ジャンルの再構成が完了しました。"_s);
        m_context.desk.message(MessageKind::Information, u"完了！"_s);
    });
    onCommand(u"MnuRefreshURLHist"_s,
              [this] { flushHistory(u"URL履歴を消去しますか？"_s, u"URLHist.txt"_s, &MDIFormTop::reloadAddresses); });
    onCommand(u"MnuRefreshFindHist"_s,
              [this] { flushHistory(u"検索履歴を消去しますか？"_s, u"FindHist.txt"_s, &MDIFormTop::reloadWords); });
    onCommand(u"MnuHTML2TXT"_s, [this] { m_context.windows.get<convert::frmHTML2TXTSetting>().showWindow(); });
    for (const QString& name : {u"Chimer.dll"_s, u"Larkport.dll"_s, u"Wrenport.dll"_s, u"VellInfo.dll"_s})
        onCommand(u"Mnu"_s + name.section(u'.', 0, 0) + u"Dll"_s, [this, name] { showVersion(name); });
}

void MDIFormTop::connectWindowCommands() {
    onCommand(u"MnuVertical"_s, [this] { Arrangement(m_context).MnuVertical(); });
    onCommand(u"mnuStandard"_s, [this] { Arrangement(m_context).mnuStandard(); });
    onCommand(u"mnuLoadWndPos"_s, [this] { Arrangement(m_context).mnuLoadWndPos(); });
    onCommand(u"mnuSaveWndPos"_s, [this] { Arrangement(m_context).mnuSaveWndPos(); });
    onCommand(u"MnuCalender"_s, [this] { m_context.windows.get<frmCalender>().showChild(); });
    onCommand(u"MnuBrowse"_s, [this] {
        // A preview that can't be made keeps nobody from the browser.
        desktop::runCommand(m_context.desk, [this] { SaveTmpFile(); });
        m_context.windows.get<frmBrowser>().showChild();
        Arrangement(m_context).showStartPage();
    });
    onCommand(u"MnuSimpleManual"_s, [this] { showManual(u"SimpleManual.mht"_s); });
    onCommand(u"MnuManual"_s, [this] { showManual(u"Manual.mht"_s); });
    onCommand(u"MnuAbout"_s, [this] { frmAbout(m_context).exec(); });
    onCommand(u"MnuHP"_s, [this] { Click_FormAboutLabel(m_context); });
    onCommand(u"MnuMyBlog"_s, [this] { Click_Zelkova(m_context); });
    onCommand(u"MnuVellInfoBlog"_s, [this] { showMakerNews(m_context); });
}

void MDIFormTop::connectPopUpCommands() {
    const auto onEditor = [this](const QString& name, auto routine) {
        onCommand(name, [this, routine] { (m_context.windows.get<frmContents>().*routine)(); });
    };
    onEditor(u"mnuUndo"_s, &frmContents::mnuUndo_Click);
    onEditor(u"mnuRedo"_s, &frmContents::mnuRedo_Click);
    onEditor(u"mnuCopy"_s, &frmContents::Copy);
    onEditor(u"mnuCut"_s, &frmContents::Cut);
    onEditor(u"mnuPaste"_s, &frmContents::Paste);
    onEditor(u"mnuGetURL"_s, &frmContents::Btn2Click_ToolBar);
    onEditor(u"mnuInsertURL"_s, &frmContents::Btn3Click_ToolBar);
    onEditor(u"mnuInsertFromCB_PlainText"_s, &frmContents::InsertFromCB_Text);
    onEditor(u"mnuInsertFromCB_ExchangedText"_s, &frmContents::InsertFromCB_Exchange);
}

void MDIFormTop::Picture1_MouseMove(qint32 xTwips) {
    constexpr int kLeftDoubleClick = 515;
    constexpr int kRightDown = 516;
    const int mouseMessage = xTwips / desktop::kTwipsPerPixel;
    if (mouseMessage == kLeftDoubleClick) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
        raise();
        activateWindow();
    } else if (mouseMessage == kRightDown) {
        m_context.desk.message(MessageKind::Plain, u"日記作成\r\nprogramed by Qorvin\r\n\r\n左クリックで表示"_s,
                               u"日記作成"_s);
    }
}

void MDIFormTop::saveHtml(platform::Outcome (site::SaveHtml::*save)()) {
    site::SaveHtml saver(m_context);
    (saver.*save)();
}

void MDIFormTop::SaveTmpFile() {
    site::SaveHtml(m_context).SaveTmpFile();
}

/// What was written is shown, however the import ended.
void MDIFormTop::importClipboard(bool (exchange::ClipboardImport::*import)(const std::optional<QString>&,
                                                                           exchange::ParagraphTags)) {
    const core::Session& session = m_context.session;
    exchange::ClipboardImport clipboard(m_context);
    const auto tellEditor = [&] {
        if (!clipboard.writtenDays().isEmpty())
            m_context.windows.get<frmContents>().day().daysChanged(clipboard.writtenDays());
    };
    try {
        const auto tags = exchange::importedParagraphs(session);
        if ((clipboard.*import)(desktop::clipboardText(), tags)) {
            site::SaveHtml(m_context).previewStep();
        }
    } catch (...) {
        tellEditor();
        throw;
    }
    tellEditor();
}

void MDIFormTop::flushHistory(const QString& question, const QString& fileName, void (MDIFormTop::*reload)()) {
    if (!m_context.desk.ask(question))
        return;
    platform::removeFile(platform::existingPath(m_context.session.UserPath + fileName));
    platform::removeFile(platform::existingPath(m_context.session.DataPath + fileName));
    (this->*reload)();
}

void MDIFormTop::reloadAddresses() {
    m_context.windows.get<frmBrowser>().HistoryAdd_URL();
}

void MDIFormTop::reloadWords() {
    m_context.windows.get<frmBrowser>().HistoryAdd_Find();
}

void MDIFormTop::mnuVellMemo() {
    const core::Session& session = m_context.session;
    const QString program = platform::existingPath(session.MyPath + u"VellMemo.exe"_s);
    if (!platform::fileExists(program)) {
        m_context.desk.message(MessageKind::Critical, u"VellMemo.exeが存在しません。"_s);
        return;
    }
    const core::Settings settings(session);
    const QString password =
        convert::DecryptPassword(settings.text(core::inSection(core::keys::kUserPass, session.UserID)));
    if (!QProcess::startDetached(program, {settings.file(core::SettingsFile::Users), session.UserID, password}))
        throw platform::Failure(u"プログラムを起動できません。"_s, program, {},
                                u"実行できるファイルか確認してください。"_s);
}

void MDIFormTop::MnuVellInfo() {
    const QString page = m_context.session.DataPath + u"VellInfo_result.htm"_s;
    platform::removeFile(page);
    const platform::Plugin plugin(m_context.session.MyPath + u"VellInfo.dll"_s);
    const velloria_diary_information& information = plugin.diaryInformation();
    const QByteArray database = m_context.session.databaseFile().toUtf8();
    if (plugin.check(information.set_paths(database.constData(), page.toUtf8().constData())))
        plugin.check(information.run());
    else
        m_context.desk.message(MessageKind::Critical, u"パスのエラーです"_s);
    m_context.desk.navigate(page);
}

void MDIFormTop::showVersion(const QString& fileName) {
    const platform::Plugin plugin(m_context.session.MyPath + fileName);
    m_context.desk.message(MessageKind::Plain, fileName + u" Version "_s + plugin.version(), fileName);
}

void MDIFormTop::showManual(const QString& fileName) {
    const QString manual = platform::existingPath(m_context.session.MyPath + fileName);
    if (!platform::fileExists(manual))
        throw platform::Failure(u"マニュアルがありません。"_s, manual, {},
                                u"Velloriaを入れ直すと元に戻ります。日記はそのままです。"_s);
    m_context.windows.get<frmBrowser>().showChild();
    m_context.desk.navigate(manual);
}

} // namespace velloria::shell
