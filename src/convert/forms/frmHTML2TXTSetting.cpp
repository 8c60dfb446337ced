#include "convert/forms/frmHTML2TXTSetting.h"

#include "core/numbers.h"
#include "desktop/line_box.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "ui_frmHTML2TXTSetting.h"

using namespace Qt::StringLiterals;

namespace velloria::convert {

frmHTML2TXTSetting::frmHTML2TXTSetting(desktop::Context& context)
    : SettingsDialog(context, u"frmHTML2TXTSetting"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmHTML2TXTSetting>()) {
    ui->setupUi(this);
    desktop::keepShort(*ui->txtHR_NUM, 4);
    ui->Lbl_Description->setText(
        u"モード説明：\n"
        "　TEXTモード：基本的には全てのタグを削除します。チェックをつけたタグは決められたフォーマットでテキストに変換し"
        "ます。\n"
        "　HTMLモード：基本的には全てのタグを残します。チェックを付けたタグは削除（もしくは決められたフォーマットでテキストに変換）します。"_s);
    ui->ListView1->addItems({u"BR"_s, u"P"_s, u"XMP"_s, u"SPAN"_s, u"S"_s, u"SUP"_s, u"SUB"_s, u"TT"_s, u"PRE"_s,
                             u"BLOCKQUOTE"_s, u"HR"_s, u"TABLE"_s, u"LIST"_s});
    setUp(rows(), {ui->Btn_OK, ui->Btn_Cancel});
}

frmHTML2TXTSetting::~frmHTML2TXTSetting() = default;

std::vector<desktop::SettingsRow> frmHTML2TXTSetting::rows() const {
    const auto knownMode = [](const QString& stored) { return stored == u"TEXT" ? stored : u"HTML"_s; };
    std::vector<desktop::SettingsRow> rows{
        {desktop::Choice{{{ui->optMODE_TEXT, u"TEXT"_s}, {ui->optMODE_HTML, u"HTML"_s}}}, kHtmlMode, {knownMode, {}}}};
    for (const HtmlSetting& setting : htmlSettingTable())
        rows.push_back(row(setting));
    return rows;
}

/// The controls bear the names of their settings.
desktop::SettingsRow frmHTML2TXTSetting::row(const HtmlSetting& setting) const {
    if (setting.number == &HtmlSettings::textHrNumber)
        return {ui->txtHR_NUM, setting.setting, {{}, [](const QString& text) {
                                                     return QString::number(core::cint(text));
                                                 }}};
    if (setting.number == &HtmlSettings::linkTagType) {
        desktop::Choice types{{{ui->opt_A_LINK_TAG_TYPE0, u"0"_s},
                               {ui->opt_A_LINK_TAG_TYPE1, u"1"_s},
                               {ui->opt_A_LINK_TAG_TYPE2, u"2"_s}}};
        return {types, setting.setting, {{}, [this](const QString&) {
                                             return ui->chkENTER->isChecked() ? u"1"_s : u"0"_s;
                                         }}};
    }
    if (auto* box = findChild<QCheckBox*>(u"chk"_s + setting.name.toString()))
        return {box, setting.setting, desktop::onUnlessZero(u"1"_s)};
    for (int i = 0; i < ui->ListView1->count(); ++i) {
        if (setting.name == u"HTML_"_s + ui->ListView1->item(i)->text())
            return {ui->ListView1->item(i), setting.setting, desktop::onUnlessZero(u"-1"_s)};
    }
    return {desktop::NoControl(), setting.setting, {{}, [](const QString&) { return u"0"_s; }}};
}

void frmHTML2TXTSetting::load(desktop::SettingsTable& table) {
    table.loadDefaults();
    try {
        if (platform::fileExists(core::Settings(m_context.session).file(core::SettingsFile::HtmlToText)))
            return SettingsDialog::load(table);
    } catch (const platform::Failure&) {
        // Told like a file that is missing.
    }
    m_context.desk.message(platform::MessageKind::Critical, u"設定ファイルの読み込みに失敗しました。"_s);
}

void frmHTML2TXTSetting::write(const core::SettingsChange& change) {
    try {
        SettingsDialog::write(change);
    } catch (const platform::Failure&) {
        m_context.desk.message(platform::MessageKind::Critical, u"設定ファイルの保存に失敗しました。"_s);
    }
}

} // namespace velloria::convert
