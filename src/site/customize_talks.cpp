#include "site/customize_talks.h"

#include "site/customize_sets.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

const QString kGivenUp = u"中止しました。"_s;

void giveUp(const core::Run& run, const CustomizeTalk& talk, const QString& why) {
    run.desk.message(platform::MessageKind::Plain, why, talk.title.toString());
    run.desk.status(kGivenUp);
}

} // namespace

const CustomizeTalk kPieceTalk{
    u"Velloria",
    u"新しいテキストの名前を入力してください。",
    u"新しいテキストを作成しました。",
    u"すでにその名前のテキストはあります。",
    u"既存のテキストに上書きしました。",
    {},
    {},
};

const CustomizeTalk kSetTalk{
    u"カスタマイズセット",
    u"新しいカスタマイズセットの名前を入力してください。",
    u"新しいカスタマイズセットを作成しました。",
    u"すでにその名前のカスタマイズセットはあります。",
    u"既存のカスタマイズセットに上書きしました。",
    u"カスタマイズセット",
    u"RSS",
};

void newCommand(const core::Run& run, const CustomizeTalk& talk, const QStringList& names,
                const std::function<void(const QString& name)>& make) {
    const QString title = talk.title.toString();
    const QString name = run.desk.input(
        talk.prompt.toString() + u"\r\n(ファイル名に使用できない文字は使用しないでください。)"_s, {}, title);
    if (name.isEmpty()) {
        giveUp(run, talk, u"名前の入力がなかったため中止します。"_s);
        return;
    }
    const bool isReserved = name.compare(talk.reserved, Qt::CaseInsensitive) == 0;
    const bool isTaken = names.contains(name, Qt::CaseInsensitive);
    if (isReserved || !isCustomizeName(run.session, name) ||
        (isTaken && !run.desk.ask(talk.taken.toString() + u"\r\n上書きしますか？"_s, title))) {
        giveUp(run, talk, u"中止します。"_s);
        return;
    }
    make(name);
    const QString done = (isTaken ? talk.replaced : talk.made).toString();
    run.desk.message(platform::MessageKind::Plain, done, title);
    run.desk.status(done);
}

bool mayDelete(const core::Run& run, const CustomizeTalk& talk, const QString& name) {
    if (run.desk.ask(talk.what.toString() + u"「%1」を消去します。\r\nよろしいですか？"_s.arg(name)))
        return true;
    run.desk.status(u"消去を中止しました。"_s);
    return false;
}

void tellDeleted(const core::Run& run, const CustomizeTalk& talk, const QString& name) {
    run.desk.status(talk.what.toString() + u"「%1」を消去しました。"_s.arg(name));
}

} // namespace velloria::site
