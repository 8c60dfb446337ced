#include "convert/forms/frmHTML2TXTSetting.h"

#include "desktop/line_box.h"
#include "ui_frmHTML2TXTSetting.h"

using namespace Qt::StringLiterals;

namespace velloria::convert {

frmHTML2TXTSetting::frmHTML2TXTSetting(desktop::Context& context)
    : ToolWindow(context, u"frmHTML2TXTSetting"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmHTML2TXTSetting>()) {
    ui->setupUi(this);
    desktop::keepShort(*ui->txtHR_NUM, 4);
    ui->Lbl_Description->setText(
        u"モード説明：\n"
        "　TEXTモード：基本的には全てのタグを削除します。チェックをつけたタグは決められたフォーマットでテキストに変換し"
        "ます。\n"
        "　HTMLモード：基本的には全てのタグを残します。チェックを付けたタグは削除（もしくは決められたフォーマットでテキストに変換）します。"_s);
    for (const QStringView tag : listedHtmlTags())
        ui->ListView1->addItem(tag.toString());
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);

    const std::optional<HtmlToTextChoice> read = readHtmlToTextChoice(file());
    show(read.value_or(HtmlToTextChoice()));
    if (!read)
        m_context.desk.message(platform::MessageKind::Critical, u"設定ファイルの読み込みに失敗しました。"_s);
}

frmHTML2TXTSetting::~frmHTML2TXTSetting() = default;

QString frmHTML2TXTSetting::file() const {
    return m_context.session.MyPath + u"HTML2TXT.ini"_s;
}

std::array<QCheckBox*, 8> frmHTML2TXTSetting::boxes() const {
    return {ui->chkHR, ui->chkBR, ui->chkP, ui->chkIMG, ui->chkANAME, ui->chkAHREF, ui->chkAHREFSharp, ui->chkENTER};
}

std::array<QRadioButton*, 3> frmHTML2TXTSetting::linkTypes() const {
    return {ui->opt_A_LINK_TAG_TYPE0, ui->opt_A_LINK_TAG_TYPE1, ui->opt_A_LINK_TAG_TYPE2};
}

void frmHTML2TXTSetting::show(const HtmlToTextChoice& choice) {
    (choice.isTextMode ? ui->optMODE_TEXT : ui->optMODE_HTML)->setChecked(true);
    for (std::size_t i = 0; i < choice.htmlTags.size(); ++i)
        ui->ListView1->item(int(i))->setCheckState(choice.htmlTags[i] ? Qt::Checked : Qt::Unchecked);
    for (std::size_t i = 0; i < choice.textBoxes.size(); ++i)
        boxes()[i]->setChecked(choice.textBoxes[i]);
    ui->txtHR_NUM->setText(choice.ruleLength);
    ui->opt_A_LINK_TAG_TYPE1->setAutoExclusive(false); // any other number leaves all three off
    for (int type = 0; type < 3; ++type)
        linkTypes()[std::size_t(type)]->setChecked(type == choice.linkTagType);
    ui->opt_A_LINK_TAG_TYPE1->setAutoExclusive(true);
}

HtmlToTextChoice frmHTML2TXTSetting::choice() const {
    HtmlToTextChoice choice;
    choice.isTextMode = ui->optMODE_TEXT->isChecked();
    for (std::size_t i = 0; i < choice.htmlTags.size(); ++i)
        choice.htmlTags[i] = ui->ListView1->item(int(i))->checkState() == Qt::Checked;
    for (std::size_t i = 0; i < choice.textBoxes.size(); ++i)
        choice.textBoxes[i] = boxes()[i]->isChecked();
    choice.ruleLength = ui->txtHR_NUM->text();
    for (int type = 0; type < 3; ++type) {
        if (linkTypes()[std::size_t(type)]->isChecked())
            choice.linkTagType = type;
    }
    return choice;
}

void frmHTML2TXTSetting::Btn_OK_Click() {
    if (!saveHtmlToTextChoice(file(), choice()))
        m_context.desk.message(platform::MessageKind::Critical, u"設定ファイルの保存に失敗しました。"_s);
    accept();
}

} // namespace velloria::convert
