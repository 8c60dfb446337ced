#include "editor/forms/frmHTMLMakeImage.h"

#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "editor/image_preview.h"
#include "editor/open_day.h"
#include "registers/file_registration.h"
#include "registers/forms/frmResistFiles.h"
#include "ui_frmHTMLMakeImage.h"

#include <QDir>
#include <QScopedValueRollback>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

const QString kFilter = u"Resist Files(*.gif,*.jpg,*.png,*.bmp)|*.gif;*.jpg;*.png;*.bmp|"
                        u"GIF Files(*.gif)|*.gif|JPG Files(*.jpg)|*.jpg|PNG Files(*.png)|*.png|"
                        u"BMP Files(*.bmp)|*.bmp|ALL Files(*.*)|*|"_s;

QString startFolder(const core::Session& session) {
    const QString kept = core::Settings(session).text(core::keys::kImagePath);
    return core::isAbsoluteFolder(kept) ? kept : QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
}

/// What lies there is gone the next time.
bool isTemporary(const QString& folder) {
    const QString temporary = QFileInfo(QDir::tempPath()).canonicalFilePath();
    const QString place = QFileInfo(folder).canonicalFilePath();
    return place == temporary || place.startsWith(temporary + u'/');
}

std::optional<QString> checked(const QCheckBox& box, const QString& value) {
    return box.isChecked() ? std::optional(value) : std::nullopt;
}

} // namespace

frmHTMLMakeImage::frmHTMLMakeImage(desktop::Context& context)
    : ToolWindow(context, u"frmHTMLMakeImage"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmHTMLMakeImage>()) {
    ui->setupUi(this);
    for (desktop::UpDown* upDown : {ui->UpDown_Border, ui->UpDown_hspace, ui->UpDown_vspace})
        upDown->box().setAccessibleName(upDown->accessibleName());
    ui->UpDown_Border->box().setObjectName(u"txt_TagBorder"_s);
    ui->UpDown_hspace->box().setObjectName(u"txt_TagHspace"_s);
    ui->UpDown_vspace->box().setObjectName(u"txt_TagVspace"_s);
    ui->Pic_Preview->setBackgroundRole(QPalette::Base);
    ui->txt_FilePath->setAcceptDrops(false); // a file would be dropped there as an address
    constexpr int kTagLines = 3;
    const int frame = 2 * ui->txt_InsertTag->frameWidth() + 2 * int(ui->txt_InsertTag->document()->documentMargin());
    ui->txt_InsertTag->setFixedHeight(kTagLines * ui->txt_InsertTag->fontMetrics().lineSpacing() + frame);
    const core::Settings settings(context.session);
    ui->txt_AddDiv->setText(settings.text(core::keys::kAddDivText));
    ui->txt_TagOther->setText(settings.text(core::keys::kTagOtherText));
    buildTag();
    connectControls();
}

frmHTMLMakeImage::~frmHTMLMakeImage() = default;

void frmHTMLMakeImage::connectControls() {
    for (QCheckBox* box : {ui->chk_TagWidth, ui->chk_TagHeight, ui->chk_TagAlign, ui->chk_TagBorder, ui->chk_TagHspace,
                           ui->chk_TagVspace, ui->chk_TagAlt, ui->chk_TagOther, ui->chk_AddDiv})
        connect(box, &QCheckBox::toggled, this, &frmHTMLMakeImage::buildTag);
    for (desktop::LineBox* box :
         {ui->txt_TagSRC, ui->txt_TagWidth, ui->txt_TagHeight, &ui->UpDown_Border->box(), &ui->UpDown_hspace->box(),
          &ui->UpDown_vspace->box(), ui->txt_TagAlt, ui->txt_TagOther, ui->txt_AddDiv})
        connect(box, &desktop::LineBox::changed, this, &frmHTMLMakeImage::buildTag);
    for (desktop::Combo* box : {ui->cmb_TagWidth, ui->cmb_TagHeight, ui->cmb_TagAlign})
        connect(box, &QComboBox::currentIndexChanged, this, &frmHTMLMakeImage::buildTag);
    connect(ui->chk_FileRename, &QCheckBox::toggled, this, [this](bool isOn) {
        if (isOn && ui->txt_RenamedFileName->text().isEmpty())
            ui->txt_RenamedFileName->setText(core::GetFileName(ui->txt_FilePath->text()));
    });
    connect(ui->txt_FilePath, &desktop::LineBox::changed, this, [this] {
        // Ticking the box later must not find the name of another file there.
        if (!ui->chk_FileRename->isChecked())
            takeOwnName(ui->txt_FilePath->text());
    });
    const auto name = [this] { run([this] { nameChanged(); }); };
    for (desktop::LineBox* box : {ui->txt_FilePath, ui->txt_RenamedFileName})
        connect(box, &desktop::LineBox::changed, this, name);
    for (QCheckBox* box : {ui->chk_FileRename, ui->chk_AutoFileName})
        connect(box, &QCheckBox::toggled, this, name);
    // After the drop: a preview may have a box to show, and whoever drags waits for the drop's end.
    connect(
        ui->txt_InsertTag, &desktop::TextPane::imageDropped, this,
        [this](const QString& path) { run([&] { choose(path); }); }, Qt::QueuedConnection);
    connect(ui->Btn_Open, &QPushButton::clicked, this, [this] { run([this] { Btn_Open_Click(); }); });
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmHTMLMakeImage::Btn_Open_Click() {
    const QString path = ui->txt_FilePath->text();
    const QString folder = path.isEmpty() ? startFolder(m_context.session) : core::GetParentFolder(path);
    const std::optional<QString> chosen =
        m_context.desk.choosePath({platform::PathMode::Open, u"画像ファイルを開く"_s, kFilter, folder});
    if (chosen && !chosen->isEmpty())
        choose(QDir::toNativeSeparators(*chosen));
}

void frmHTMLMakeImage::choose(const QString& path) {
    // A name that was typed for the last picture would be a wrong one for this.
    if (!takesAutomaticName())
        takeOwnName(path);
    ui->txt_FilePath->setText(path);
    preview(path);
    run([this] { nameChanged(); });
}

void frmHTMLMakeImage::preview(const QString& path) {
    const platform::Hourglass hourglass(m_context.desk);
    // The last picture must not stand beside another one's name.
    ui->Pic_Preview->clear();
    ui->lbl_Preview->setText(u"プレビュー"_s);
    ui->lbl_Size->setText(u"Size : "_s);
    const double pixelRatio = ui->Pic_Preview->devicePixelRatioF();
    const ImagePreview preview = drawPreview(path, pixelRatio);
    if (preview.failure) {
        const PreviewBox box = previewBox(*preview.failure);
        m_context.desk.message(platform::MessageKind::Critical, box.text, box.title);
        return;
    }
    QPixmap picture = QPixmap::fromImage(preview.picture);
    picture.setDevicePixelRatio(pixelRatio);
    ui->Pic_Preview->setPixmap(picture);
    const PreviewNumbers numbers = previewNumbers(preview.size);
    ui->lbl_Preview->setText(numbers.scaleText);
    ui->lbl_Size->setText(numbers.sizeText);
    ui->cmb_TagWidth->setCurrentText(u"px"_s);
    ui->cmb_TagHeight->setCurrentText(u"px"_s);
    ui->txt_TagWidth->setText(QString::number(preview.size.width()));
    ui->txt_TagHeight->setText(QString::number(preview.size.height()));
}

void frmHTMLMakeImage::takeOwnName(const QString& path) {
    const QScopedValueRollback naming(m_isNaming, true);
    ui->txt_RenamedFileName->setText(core::GetFileName(path));
}

/// Shows the address of what an OK will register.
void frmHTMLMakeImage::nameChanged() {
    if (m_isNaming)
        return;
    const QScopedValueRollback naming(m_isNaming, true);
    const bool isRenamed = ui->chk_FileRename->isChecked();
    ui->chk_AutoFileName->setEnabled(isRenamed);
    ui->txt_RenamedFileName->setEnabled(isRenamed);
    ui->txt_RenamedFileName->setReadOnly(takesAutomaticName());
    if (takesAutomaticName() && !ui->txt_FilePath->text().isEmpty())
        ui->txt_RenamedFileName->setText(automaticName());
    ui->txt_TagSRC->setText(registers::pageAddress(siteName()));
}

/// The day or the register may have moved on since the picture was chosen. What was typed into address and tag stays
/// but for the name.
void frmHTMLMakeImage::renewAutomaticName() {
    if (!takesAutomaticName() || ui->txt_FilePath->text().isEmpty())
        return;
    const QString shown = ui->txt_RenamedFileName->text();
    const QString name = automaticName();
    if (name == shown)
        return;
    const auto renamed = [&](QString text) {
        return text.replace(registers::pageAddress(shown), registers::pageAddress(name));
    };
    const QString tag = renamed(ui->txt_InsertTag->text());
    const QScopedValueRollback naming(m_isNaming, true);
    ui->txt_RenamedFileName->setText(name);
    ui->txt_TagSRC->setText(renamed(ui->txt_TagSRC->text())); // builds the tag anew
    ui->txt_InsertTag->setText(tag);
}

QString frmHTMLMakeImage::automaticName() const {
    return automaticImageName(registers::FileRegister(m_context.session.databaseFile()), m_context.session.EnterDay,
                              core::GetFileExt(ui->txt_FilePath->text()));
}

bool frmHTMLMakeImage::takesAutomaticName() const {
    return ui->chk_FileRename->isChecked() && ui->chk_AutoFileName->isChecked();
}

QString frmHTMLMakeImage::siteName() const {
    return ui->chk_FileRename->isChecked() ? ui->txt_RenamedFileName->text()
                                           : core::GetFileName(ui->txt_FilePath->text());
}

ImageAttributes frmHTMLMakeImage::attributes() const {
    ImageAttributes attributes;
    attributes.source = ui->txt_TagSRC->text();
    if (ui->chk_TagWidth->isChecked())
        attributes.width.emplace(ImageLength{ui->txt_TagWidth->text(), ui->cmb_TagWidth->currentText()});
    if (ui->chk_TagHeight->isChecked())
        attributes.height.emplace(ImageLength{ui->txt_TagHeight->text(), ui->cmb_TagHeight->currentText()});
    attributes.align = checked(*ui->chk_TagAlign, ui->cmb_TagAlign->currentText());
    attributes.border = checked(*ui->chk_TagBorder, ui->UpDown_Border->box().text());
    attributes.hspace = checked(*ui->chk_TagHspace, ui->UpDown_hspace->box().text());
    attributes.vspace = checked(*ui->chk_TagVspace, ui->UpDown_vspace->box().text());
    attributes.alt = checked(*ui->chk_TagAlt, ui->txt_TagAlt->text());
    attributes.other = checked(*ui->chk_TagOther, ui->txt_TagOther->text());
    attributes.division = checked(*ui->chk_AddDiv, ui->txt_AddDiv->text());
    return attributes;
}

void frmHTMLMakeImage::buildTag() {
    ui->txt_InsertTag->setText(imageTag(attributes()));
}

void frmHTMLMakeImage::Btn_OK_Click() {
    auto& openDay = m_context.windows.get<OpenDay>();
    if (!openDay.isOpen()) {
        m_context.desk.notice(u"日記が開かれていないため、画像の挿入も登録もしませんでした。"_s);
        return;
    }
    renewAutomaticName();
    // What is refused here must not have left a tag behind: an OK that is repeated would insert it twice.
    if (ui->chk_Resist->isChecked())
        registerImage();
    openDay.insertAtCaretOfContents(ui->txt_InsertTag->text());
    const core::Session& session = m_context.session;
    core::SettingsChange left;
    left.set(session, core::keys::kAddDivText, ui->txt_AddDiv->text());
    left.set(session, core::keys::kTagOtherText, ui->txt_TagOther->text());
    const QString folder = core::GetParentFolder(ui->txt_FilePath->text());
    if (!folder.isEmpty() && !isTemporary(folder))
        left.set(session, core::keys::kImagePath, folder);
    left.writeQuietly();
    accept();
}

void frmHTMLMakeImage::registerImage() {
    const platform::Hourglass hourglass(m_context.desk);
    registers::FileRegistration files(m_context);
    const QString path = ui->txt_FilePath->text();
    const QString& day = m_context.session.EnterDay;
    const auto number = qint16(m_context.windows.get<OpenDay>().number());
    if (ui->chk_FileRename->isChecked())
        files.ResistFile2(path, ui->txt_RenamedFileName->text(), day, number);
    else
        files.ResistFile(path, day, number);
    if (auto* shown = m_context.windows.find<registers::frmResistFiles>())
        shown->fillList();
}

} // namespace velloria::editor
