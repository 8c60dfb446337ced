#include "shell/menu_table.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

// Odd spellings of names are fixed ones; a caption that is the same twice has no other language.
constexpr MenuRow kRows[] = {
    {0, "MnuFile"_L1, u"&File", u"ファイル(&F)"},
    {1, "mnu_DiaryfromClipboard"_L1, u"Read from Clipboard", u"クリップボードから読み込む"},
    {2, "mnu_DiaryfromClipboard_UseFormattedText"_L1, u"Use FormattedText", u"規定のフォーマットで読み込む"},
    {2, "mnu_DiaryfromClipboard_UsePlainText"_L1, u"Use PlainText", u"通常のテキストを読み込む"},
    {1, "mnuMinus7"_L1, u"", u""},
    {1, "MnuSaveHTML"_L1, u"&Save HTML", u"HTMLファイルに保存(&S)"},
    {1, "MnuSaveHTMLAS"_L1, u"Save HTML &As ...", u"名前を付けてHTMLファイルに保存(&A)"},
    {1, "MnuMinus9"_L1, u"", u""},
    {1, "MnuExport"_L1, u"Diary Export", u"日記エクスポート"},
    {2, "MnuTextExport"_L1, u"Text Export", u"テキストエクスポート"},
    {2, "MnuMTExport"_L1, u"MovableType Export", u"MovableTypeエクスポート"},
    {2, "MnuHTNExport"_L1, u"Hatena Export", u"はてなエクスポート"},
    {1, "MnuImport"_L1, u"Diary Import", u"日記インポート"},
    {2, "MnuImportNoFunction"_L1, u"no function", u"no function"},
    {2, "MnuMTImport"_L1, u"MovableType Import", u"MovableTypeインポート"},
    {2, "MnuHTNImport"_L1, u"Hatena Import", u"はてなインポート"},
    {1, "MnuMinus1"_L1, u"", u""},
    {1, "MnuMakeLog"_L1, u"Make &Log", u"ログ作成(&L)"},
    {1, "MnuMinus"_L1, u"", u""},
    {1, "mnuImportCust"_L1, u"&Import CustomizeFile", u"カスタマイズファイルのインポート(&I)"},
    {1, "mnuExportCust"_L1, u"&Export CustomizeFile", u"カスタマイズファイルのエクスポート(&E)"},
    {1, "mnuMinus8"_L1, u"", u""},
    {1, "MnuExit"_L1, u"E&xit", u"終了(&X)"},
    {0, "MnuDiary"_L1, u"&Diary", u"日記(&D)"},
    {1, "MnuWriteDiary"_L1, u"Write &Diary", u"日記を書く(&W)"},
    {1, "MnuAddDiary"_L1, u"Add Diary", u"日記を書き足す(&A)"},
    {1, "MnuDeleteDiary"_L1, u"Delete Diary", u"日記を削除"},
    {1, "MnuDeleteImportDiary"_L1, u"Delete Import Diary", u"インポートした日記をまとめて削除"},
    {1, "MnuSaveDiary"_L1, u"Save Diary(&U)", u"日記を保存する(&U)"},
    {1, "MnuMinus12"_L1, u"", u""},
    {1, "MnuSaveHTML_D"_L1, u"&Save HTML", u"HTMLファイルに保存(&S)"},
    {1, "MnuFTPUp"_L1, u"&FTP Upload", u"&FTPでアップロード"},
    {1, "MnuPING"_L1, u"&PING", u"&PING"},
    {1, "MnuMinus10"_L1, u"", u""},
    {1, "MnuBlogUp"_L1, u"Blog Upload", u"ブログへアップロード"},
    {1, "MnuBlogView"_L1, u"&View Blog", u"ブログを見る"},
    {1, "MnuOpenBlogManagement"_L1, u"&Open Blog Management", u"ブログ管理画面を開く(&O)"},
    {1, "MnuMinus15"_L1, u"", u""},
    {1, "MnuDiaryTools"_L1, u"&Tool", u"ツール(&T)"},
    {2, "MnuFindDiary"_L1, u"&Find Diary", u"日記を検索(&F)"},
    {2, "MnuViewOldDiary"_L1, u"&View Old Diary", u"昔の日記を見る(&V)"},
    {0, "MnuTool"_L1, u"&Tools", u"ツール(&T)"},
    {1, "mnuVellMemo"_L1, u"VellMemo", u"ベロリアメモの起動"},
    {1, "MnuMinus18"_L1, u"", u""},
    {1, "ResistLogs"_L1, u"Resist Diary &Logs", u"ログを登録(&L)"},
    {1, "ResistOtherFiles"_L1, u"&Resist Other Files", u"その他のファイルを登録(&R)"},
    {1, "MnuMinus11"_L1, u"", u""},
    {1, "MnuVellInfo"_L1, u"Show Diary Information", u"日記情報表示"},
    {1, "MnuOptimize"_L1, u"&Optimize Database", u"データベースの最適化(&O)"},
    {1, "MnuBackups"_L1, u"Diary &Backups ...", u"日記のバックアップ..."},
    {1, "MnuReConstructionGenre"_L1, u"ReConstruction Genre", u"ジャンルの再構成"},
    {1, "MnuOptionInternalBrowser"_L1, u"Flush History", u"各種履歴の削除"},
    {2, "MnuRefreshURLHist"_L1, u"Refresh &URL History", u"&URL履歴の削除"},
    {2, "MnuRefreshFindHist"_L1, u"Refresh &Find History", u"&検索履歴の削除"},
    {1, "mnuMinus5"_L1, u"", u""},
    {1, "MnuUpdateCheck"_L1, u"&UpdateCheck", u"アップデートチェック(&U)"},
    {1, "MnuVellUpdater"_L1, u"&Velloria Updater", u"&Velloria Updaterの起動"},
    {0, "MnuOption"_L1, u"&Option", u"オプション(&O)"},
    {1, "mnuEnvironment"_L1, u"&Environment", u"環境(&E)"},
    {1, "MnuCustomize_menu"_L1, u"&Customize", u"カスタマイズ(&C)"},
    {2, "MnuCustomizeSelect"_L1, u"&Select Customizeset", u"カスタマイズセットの選択(&S)"},
    {2, "MnuCustomize"_L1, u"&Customize", u"カスタマイズ(&C)"},
    {1, "MnuHTML2TXT"_L1, u"&HTML2TEXT Setting", u"HTML変換設定(&H)"},
    {1, "mnuMinus6"_L1, u"", u""},
    {1, "MnuPref"_L1, u"&Preference", u"設定(&P)"},
    {1, "MnuMinus13"_L1, u"", u""},
    {1, "MnuUserManager"_L1, u"&User Manager", u"ユーザー管理(&U)"},
    {0, "MnuWindow"_L1, u"&Window", u"ウィンドウ(&W)"},
    {1, "MnuVertical"_L1, u"&Vertical", u"垂直に並べる(&V)"},
    {1, "mnuStandard"_L1, u"&Standard", u"基本設定で並べる(&S)"},
    {1, "mnuLoadWndPos"_L1, u"Load Window Position", u"保存したウィンドウの状態を復元"},
    {1, "mnuMinus3"_L1, u"", u""},
    {1, "mnuSaveWndPos"_L1, u"Save Window Position", u"ウィンドウの状態を保存"},
    {1, "mnuMinus4"_L1, u"", u""},
    {1, "MnuCalender"_L1, u"&Calender", u"カレンダーを表示(&C)"},
    {1, "MnuBrowse"_L1, u"Local &Browser", u"ローカルブラウザを表示(&B)"},
    {0, "MnuHelp"_L1, u"&Help", u"ヘルプ(&H)"},
    {1, "MnuSimpleManual"_L1, u"Simple Manual", u"簡単マニュアル"},
    {1, "MnuManual"_L1, u"Manual", u"マニュアル"},
    {1, "MnuMinus14"_L1, u"", u""},
    {1, "MnuAbout"_L1, u"&About", u"Velloriaについて(&A)"},
    {1, "MnuPlugin"_L1, u"Plugin", u"Plugin"},
    {2, "MnuNoPlugin"_L1, u"No Plugin", u"No Plugin"},
    {2, "MnuChimerDll"_L1, u"Chimer.dll", u"Chimer.dll"},
    {2, "MnuLarkportDll"_L1, u"Larkport.dll", u"Larkport.dll"},
    {2, "MnuWrenportDll"_L1, u"Wrenport.dll", u"Wrenport.dll"},
    {2, "MnuVellInfoDll"_L1, u"VellInfo.dll", u"VellInfo.dll"},
    {1, "MnuMinus16"_L1, u"", u""},
    {1, "MnuHP"_L1, u"Qorvin's HomePage", u"Qorvin's HomePage"},
    {1, "MnuMyBlog"_L1, u"Zelkova Soft Developer's Diary", u"Zelkova Soft開発日誌"},
    {1, "MnuVellInfoBlog"_L1, u"Velloria Daily Information", u"Velloria情報"},
    {0, "mnuContentsPopUp"_L1, u"ポップアップメニュー", u"ポップアップメニュー"},
    {1, "mnuUndo"_L1, u"Undo", u"元に戻す"},
    {1, "mnuRedo"_L1, u"Redo", u"やりなおし"},
    {1, "MnuMinus17"_L1, u"", u""},
    {1, "mnuCopy"_L1, u"コピー", u"コピー"},
    {1, "mnuCut"_L1, u"切り取り", u"切り取り"},
    {1, "mnuPaste"_L1, u"貼り付け", u"貼り付け"},
    {1, "MnuMinus19"_L1, u"", u""},
    {1, "mnuGetURL"_L1, u"ブラウザからURLを取得", u"ブラウザからURLを取得"},
    {1, "mnuInsertURL"_L1, u"画像を挿入", u"画像を挿入"},
    {1, "mnuInsertFromClipboard"_L1, u"クリップボードから読み込む", u"クリップボードから読み込む"},
    {2, "mnuInsertFromCB_PlainText"_L1, u"そのまま", u"そのまま"},
    {2, "mnuInsertFromCB_ExchangedText"_L1, u"HTMLに変換", u"HTMLに変換"},
};

constexpr QLatin1StringView kToCome[] = {
    "MnuMTExport"_L1, "MnuHTNExport"_L1, "MnuImportNoFunction"_L1,
    "MnuMTImport"_L1, "MnuHTNImport"_L1, "MnuNoPlugin"_L1,
};

} // namespace

std::span<const MenuRow> menuRows() {
    return kRows;
}

std::span<const QLatin1StringView> commandsToCome() {
    return kToCome;
}

QString captionOf(const MenuRow& row, core::MenuLanguage language) {
    return (language == core::MenuLanguage::English ? row.english : row.japanese).toString();
}

QString plainCaption(const QString& caption) {
    static const QRegularExpression kKeyBehind(u"\\(&.\\)"_s);
    QString plain = caption;
    return plain.remove(kKeyBehind).remove(u'&');
}

} // namespace velloria::shell
