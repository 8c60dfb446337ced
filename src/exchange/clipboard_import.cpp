#include "exchange/clipboard_import.h"

#include "convert/paragraphs.h"
#include "core/date_forms.h"
#include "core/keys.h"
#include "core/long_text.h"
#include "core/settings.h"
#include "exchange/element_reader.h"
#include "platform/failure.h"
#include "store/rescue_file.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {

using platform::MessageKind;

namespace {

constexpr qsizetype kDaySize = 10; // "yyyy/mm/dd"
const QString kDayForm = u"そのフォーマットは正しくありません。その日付の登録は中止します。"_s;
const QString kDay = QString::fromUtf16(kDayTag);
const QString kTitle = QString::fromUtf16(kTitleTag);
const QString kContents = QString::fromUtf16(kContentsTag);

/// The text with CR LF between its lines, nothing, after a message, when there is none.
std::optional<QString> textOf(platform::Desk& desk, const std::optional<QString>& clipboard) {
    if (!clipboard) {
        desk.message(MessageKind::Critical, u"クリップボードのデータが適切な形式ではありません。"_s);
        return std::nullopt;
    }
    if (clipboard->isEmpty()) {
        desk.message(MessageKind::Critical, u"クリップボードの中に何も入っていません。"_s);
        return std::nullopt;
    }
    return core::withCrLf(*clipboard);
}

QString tagged(const core::Session& session, const QString& text, ParagraphTags tags) {
    return tags == ParagraphTags::Added ? convert::addParagraphTags(text, convert::paragraphOpening(session)) : text;
}

} // namespace

ParagraphTags importedParagraphs(const core::Session& session) {
    return core::Settings(session).number(core::keys::kClipWithHTML) > 0 ? ParagraphTags::Added : ParagraphTags::None;
}

ClipboardImport::ClipboardImport(const core::Run& run)
    : m_run(run)
    , m_import(run.session.databaseFile()) {}

bool ClipboardImport::ImportFormattedClipboard(const std::optional<QString>& clipboard, ParagraphTags tags) {
    const std::optional<QString> text = textOf(m_run.desk, clipboard);
    if (!text)
        return false;
    const int count = countEntries(*text);
    if (count == 0) {
        refuse(u"クリップボードの中に有効なデータがありませんでした。"_s);
        return false;
    }
    try {
        ElementReader reader(*text);
        for (int entry = 0; entry < count; ++entry) {
            importEntry(reader, tags);
            reader.moveOn();
        }
        m_import.settle();
    } catch (const platform::Failure& failure) {
        settleBefore(failure);
    }
    tellEnd();
    return true;
}

/// What the engine says of the database is true of the entry that it refused, not of those before it.
void ClipboardImport::settleBefore(const platform::Failure& failure) {
    try {
        m_import.settle();
    } catch (const platform::Failure&) {
        // The first reason is the one to tell.
    }
    const qsizetype written = m_import.stored();
    if (written == 0)
        throw failure;
    platform::Failure told(failure.whatFailed(), failure.file(), failure.reason(),
                           u"残りの日記を、もう一度読み込んでください。"_s);
    told.addStage(u"それより前の%1件の日記は読み込みました"_s.arg(written));
    throw told;
}

void ClipboardImport::importEntry(ElementReader& reader, ParagraphTags tags) {
    const QString day = reader.element(kDay);
    const bool isTaken = m_import.hasDay(day);
    if (isTaken && !mayOverwrite(day)) {
        importUnderOtherDay(reader, tags);
        return;
    }
    const QString title = reader.element(kTitle);
    const QString contents = tagged(m_run.session, reader.element(kContents), tags);
    if (isTaken)
        overwrite({day, title, contents});
    else
        add({day, title, contents});
}

void ClipboardImport::importUnderOtherDay(ElementReader& reader, ParagraphTags tags) {
    const QString title = reader.element(kTitle);
    if (!m_run.desk.ask(u"その内容は、別の日の内容にしますか？(タイトルは以下の通りです)\r\n[タイトル："_s + title +
                        u']'))
        return;
    const QStringList parts = askForDay();
    const QString day = parts.join(u'/');
    if (parts.contains(QString())) {
        m_run.desk.message(MessageKind::Information, day + u"の入力を中止します。"_s);
        return;
    }
    if (day.size() != kDaySize) {
        refuse(kDayForm);
        return;
    }
    if (m_import.hasDay(day)) {
        m_import.settle();
        refuse(u"その日付("_s + day + u")は存在します。その日付の登録は中止します。"_s);
        return;
    }
    add({day, title, tagged(m_run.session, reader.element(kContents), tags)});
}

bool ClipboardImport::ImportPlainClipboard(const std::optional<QString>& clipboard, ParagraphTags tags) {
    const std::optional<QString> text = textOf(m_run.desk, clipboard);
    if (!text)
        return false;
    const QString day = askForDay().join(u'/');
    if (day.size() != kDaySize || !core::parseDate(day, m_run.clock.now().date().year())) {
        refuse(kDayForm);
        return false;
    }
    const bool isTaken = m_import.hasDay(day);
    if (isTaken && !mayOverwrite(day))
        return false;
    m_import.settle();
    const QString whenEmpty = u"デフォルトのタイトル"_s;
    QString title = m_run.desk.input(u"タイトルを入力してください。"_s, whenEmpty);
    if (title.isEmpty())
        title = whenEmpty;
    const QString contents = tagged(m_run.session, *text, tags);
    if (isTaken)
        overwrite({day, title, contents});
    else
        add({day, title, contents});
    m_import.settle();
    tellEnd();
    return true;
}

/// What waits for its commit is not in the diary yet, and a disk that is full may never take it.
QStringList ClipboardImport::writtenDays() const {
    return m_days.first(m_import.stored());
}

QStringList ClipboardImport::askForDay() {
    const QStringList today = m_run.session.Today.split(u'/');
    return {m_run.desk.input(u"年を入力してください(例:2003)。"_s, today.value(0)),
            m_run.desk.input(u"月を入力してください(例:03)。"_s, today.value(1)),
            m_run.desk.input(u"日を入力してください(例:01)。"_s, today.value(2))};
}

bool ClipboardImport::mayOverwrite(const QString& day) {
    m_import.settle();
    return m_run.desk.ask(day + u"は、すでに入力済みです。\r\n上書きしますか？"_s);
}

void ClipboardImport::add(const store::NewEntry& entry) {
    m_import.add(entry);
    m_days += entry.day;
}

void ClipboardImport::overwrite(const store::NewEntry& entry) {
    store::RescueFile rescue(m_run);
    rescue.guard([&] { m_import.overwrite(entry, [&](const store::Entry& row) { rescue.keep({row}, u"上書き"_s); }); });
    m_days += entry.day;
}

void ClipboardImport::tellEnd() {
    QString text = u"読み込み完了!"_s;
    for (const QString& day : std::as_const(m_days))
        text += u"\r\n"_s + day;
    m_run.desk.message(MessageKind::Information, text);
    m_run.desk.status(u"Clipboardから読み込み完了！"_s);
}

void ClipboardImport::refuse(const QString& text) {
    m_run.desk.message(MessageKind::Critical, text);
}

platform::Outcome importCommand(const core::Run& run, ClipboardForm form, const std::optional<QString>& clipboard,
                                const ImportCalls& calls) {
    ClipboardImport import(run);
    bool isRead = false;
    try {
        const ParagraphTags tags = importedParagraphs(run.session);
        isRead = form == ClipboardForm::Formatted ? import.ImportFormattedClipboard(clipboard, tags)
                                                  : import.ImportPlainClipboard(clipboard, tags);
        if (isRead)
            calls.preview();
    } catch (...) {
        if (!import.writtenDays().isEmpty())
            calls.written(import.writtenDays());
        throw;
    }
    if (isRead)
        calls.written(import.writtenDays());
    return isRead ? platform::Outcome::Done : platform::Outcome::Refused;
}

QString GetClipboardText(const core::Run& run, const std::optional<QString>& clipboard, ParagraphTags tags) {
    const std::optional<QString> text = textOf(run.desk, clipboard);
    return text ? tagged(run.session, *text, tags) : QString();
}

} // namespace velloria::exchange
