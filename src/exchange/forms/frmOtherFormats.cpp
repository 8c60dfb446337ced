#include "exchange/forms/frmOtherFormats.h"

#include "exchange/diary_export.h"
#include "exchange/foreign_import.h"
#include "ui_frmOtherFormats.h"

#include <QPointer>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velloria::exchange {

using Place = ForeignFormat::Place;
using platform::PathMode;

frmOtherFormats::frmOtherFormats(desktop::Context& context)
    : ToolWindow(context, u"frmOtherFormats"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmOtherFormats>()) {
    ui->setupUi(this);
    offer(Direction::Import);
    connect(ui->LstFormats, &QListWidget::currentRowChanged, this, &frmOtherFormats::showPlaces);
    connect(ui->LstFormats, &QListWidget::itemActivated, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmOtherFormats::~frmOtherFormats() = default;

void frmOtherFormats::showFor(Direction direction) {
    offer(direction);
    showWindow();
}

void frmOtherFormats::offer(Direction direction) {
    const bool isImport = direction == Direction::Import;
    setWindowTitle(isImport ? u"その他の形式のインポート"_s : u"その他の形式のエクスポート"_s);
    ui->Lbl_Description->setText(
        (isImport ? u"ほかのプログラムの日記を取り込みます。"_s : u"すべての日記をほかの形式で書き出します。"_s) +
        u"\n形式を選び、OKボタンを押してください。"_s);
    const QSignalBlocker blocker(ui->LstFormats);
    m_choices = isImport ? imports() : exports();
    ui->LstFormats->clear();
    for (const Choice& each : m_choices)
        ui->LstFormats->addItem(each.name);
    ui->LstFormats->setCurrentRow(0);
    showPlaces();
}

std::vector<frmOtherFormats::Choice> frmOtherFormats::imports() const {
    std::vector<Choice> choices;
    for (const ForeignFormat& format : foreignFormats()) {
        const auto start = [&context = m_context, &format](const QString& path) {
            const desktop::Requests& requests = context.requests;
            if (importForeignDiary(context, format, path, requests.daysChanged) == platform::Outcome::Refused)
                return false;
            requests.rebuildGenres(); // into the editor's box, too
            return true;
        };
        choices.push_back({format.program,
                           format.place,
                           {PathMode::Open, format.program + u"の読み込み"_s, format.filter, {}},
                           start});
    }
    return choices;
}

std::vector<frmOtherFormats::Choice> frmOtherFormats::exports() const {
    const auto starts = [&context = m_context](decltype(exportMarkdown)* write) {
        return [&context, write](const QString& path) {
            const std::optional<DiaryExport> done = write(context, path);
            if (done && done->isUnusual())
                context.desk.notice(done->text());
            else if (done)
                context.desk.status(done->text());
            return done.has_value();
        };
    };
    platform::PathRequest lines{
        PathMode::Save, u"JSON Linesの書き出し"_s, u"JSON Lines(*.jsonl)|*.jsonl|ALL Files(*.*)|*.*"_s, {}};
    lines.defaultSuffix = u"jsonl"_s;
    lines.asksBeforeReplacing = false; // the export does
    return {{u"Markdown"_s, Place::Folder, {PathMode::Save, u"Markdownの書き出し"_s, {}, {}}, starts(exportMarkdown)},
            {u"JSON Lines"_s, Place::File, lines, starts(exportJsonLines)}};
}

const frmOtherFormats::Choice& frmOtherFormats::choice() const {
    return m_choices[std::size_t(ui->LstFormats->currentRow())];
}

/// A format that lies in a file or in a folder leaves the choice; of the others the box tells which it is.
void frmOtherFormats::showPlaces() {
    ui->Chk_Folder->setEnabled(choice().place == Place::Either);
    ui->Chk_Folder->setChecked(choice().place != Place::File);
}

std::optional<QString> frmOtherFormats::choosePath() const {
    platform::PathRequest request = choice().file;
    if (ui->Chk_Folder->isChecked())
        request = {PathMode::Folder, request.title, {}, {}};
    request.folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return m_context.desk.choosePath(request);
}

void frmOtherFormats::Btn_OK_Click() {
    const QPointer<frmOtherFormats> window(this); // the program may end while a dialog is open
    const Choice chosen = choice();
    const std::optional<QString> path = choosePath();
    if (window && path && !path->isEmpty() && chosen.start(*path) && window)
        accept();
}

} // namespace velloria::exchange
