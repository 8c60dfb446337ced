#include "memo/forms/questions.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <vector>

using namespace Qt::StringLiterals;

namespace velloria::memo {
namespace {

/// The keyboard goes back to where it was.
void giveBack(QWidget* window) {
    if (!window || !window->isVisible())
        return;
    window->raise();
    window->activateWindow();
}

template <typename Answer>
struct Choice {
    Answer answer;
    QString text;
};

/// The last choice is that of Escape.
template <typename Answer>
Answer choose(QWidget& owner, const Words& words, const QString& text, const std::vector<Choice<Answer>>& choices) {
    const QPointer<QMessageBox> box(new QMessageBox(QMessageBox::Question, words(u"ベロリアメモ"_s, u"VellMemo"_s),
                                                    text, QMessageBox::NoButton, &owner));
    box->setTextFormat(Qt::PlainText);
    std::vector<std::pair<QPushButton*, Answer>> buttons;
    for (const auto& [answer, caption] : choices) {
        const bool isLast = buttons.size() + 1 == choices.size();
        buttons.emplace_back(box->addButton(caption, isLast ? QMessageBox::RejectRole : QMessageBox::ActionRole),
                             answer);
    }
    box->setDefaultButton(buttons.front().first);
    box->setEscapeButton(buttons.back().first);
    box->exec();
    Answer answer = choices.back().answer;
    for (const auto& [button, meaning] : buttons) {
        if (box && box->clickedButton() == button)
            answer = meaning;
    }
    delete box;
    giveBack(&owner);
    return answer;
}

} // namespace

Unsaved askAboutUnsaved(QWidget& owner, const Words& words) {
    return choose<Unsaved>(
        owner, words,
        words(u"メモは保存されていません。保存しますか？"_s, u"The memo is not saved. Do you want to save it?"_s),
        {{Unsaved::Save, words(u"保存する(&S)"_s, u"&Save"_s)},
         {Unsaved::Discard, words(u"保存しない(&N)"_s, u"Do&n't save"_s)},
         {Unsaved::Cancel, words(u"キャンセル"_s, u"Cancel"_s)}});
}

Conflict askAboutConflict(QWidget& owner, const Words& words, bool isThere) {
    std::vector<Choice<Conflict>> choices{
        {Conflict::SaveAsNew, words(u"別のメモとして保存(&N)"_s, u"Save as a &new memo"_s)},
        {Conflict::Cancel, words(u"キャンセル"_s, u"Cancel"_s)}};
    if (isThere)
        choices.insert(choices.begin() + 1, {Conflict::Overwrite, words(u"上書き(&O)"_s, u"&Overwrite"_s)});
    const QString text = isThere
                             ? words(u"このメモは、ほかのプログラムが変更しました。\n入力した内容をどうしますか？"_s,
                                     u"Another program has changed this memo.\nWhat is to become of what you typed?"_s)
                             : words(u"このメモは、ほかのプログラムが削除しました。\n入力した内容をどうしますか？"_s,
                                     u"Another program has removed this memo.\nWhat is to become of what you typed?"_s);
    return choose<Conflict>(owner, words, text, choices);
}

std::optional<QString> askPassword(QWidget* owner, const Words& words) {
    const QPointer<QInputDialog> dialog(new QInputDialog(owner));
    dialog->setWindowTitle(words(u"パスワードの入力"_s, u"Password"_s));
    dialog->setLabelText(words(u"パスワード"_s, u"Password"_s));
    dialog->setTextEchoMode(QLineEdit::Password);
    dialog->setOkButtonText(u"OK"_s);
    dialog->setCancelButtonText(words(u"キャンセル"_s, u"Cancel"_s));
    const bool isAccepted = dialog->exec() == QDialog::Accepted && dialog;
    const std::optional<QString> password = isAccepted ? std::optional(dialog->textValue()) : std::nullopt;
    delete dialog;
    giveBack(owner);
    return password;
}

} // namespace velloria::memo
