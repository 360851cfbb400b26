import QtQuick
import QtTest

import Quire

Item {
    id: root

    property bool wanted: true

    width: 820
    height: 620

    QuestionAlert {
        id: question

        alerts: fixture.shell.alerts
        wanted: root.wanted
    }
    NoticeAlert {
        id: notice

        activity: fixture.shell.activity
        wanted: root.wanted
    }

    TestCase {
        name: "Alerts"
        when: windowShown

        readonly property string offer: "Quire 2.0 is available"
        readonly property string words: "Open the Quire website to get the newest version."

        // The visible control of that name in what is shown over the window.
        function named(name, item) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (!child.visible)
                    continue;
                if (child.Accessible.name === name && !child.Accessible.ignored)
                    return child;
                const found = named(name, child);
                if (found)
                    return found;
            }
            return null;
        }

        function button(name) {
            return named(name, question.contentItem);
        }

        function askToUpdate() {
            fixture.ask(offer, words, ["Open Website", "Later"]);
            tryVerify(() => question.opened);
        }

        function answer() {
            return fixture.pressed[fixture.pressed.length - 1];
        }

        function init() {
            root.wanted = true;
            verify(!question.visible);
            verify(!notice.visible);
        }

        function test_anOfferHasItsWordsAndItsButtonsInOrder() {
            askToUpdate();
            compare(question.contentItem.Accessible.name, offer);
            compare(question.contentItem.Accessible.description, words);
            verify(named(offer, question.contentItem));
            verify(named(words, question.contentItem));
            const first = button("Open Website");
            const second = button("Later");
            verify(first.mapToItem(root, 0, 0).x > second.mapToItem(root, 0, 0).x); // the one that is meant, at the edge
            verify(first.activeFocus);
            mouseClick(second);
            compare(answer(), 1);
            tryVerify(() => !question.visible);
        }

        function test_theFirstButtonAnswersWithItsPlace() {
            askToUpdate();
            mouseClick(button("Open Website"));
            compare(answer(), 0);
            tryVerify(() => !question.visible);
        }

        function test_returnPressesTheFirstAndEscapePutsAway_data() {
            return [{tag: "Return", key: Qt.Key_Return, answer: 0}, {tag: "Enter", key: Qt.Key_Enter, answer: 0},
                {tag: "Space", key: Qt.Key_Space, answer: 0}, {tag: "Escape", key: Qt.Key_Escape, answer: 1}];
        }

        function test_returnPressesTheFirstAndEscapePutsAway(data) {
            askToUpdate();
            keyClick(data.key);
            tryCompare(question, "visible", false);
            compare(answer(), data.answer);
        }

        function test_returnOnAnotherButtonPressesThatOne() {
            askToUpdate();
            keyClick(Qt.Key_Tab);
            verify(button("Later").activeFocus);
            keyClick(Qt.Key_Return);
            tryCompare(question, "visible", false);
            compare(answer(), 1);
        }

        function test_theNextIsShownWhenTheFirstIsAnswered_data() {
            return [{tag: "by a button", key: Qt.Key_Return, answers: [0, 0]},
                {tag: "by Escape", key: Qt.Key_Escape, answers: [1, 0]}];
        }

        function test_theNextIsShownWhenTheFirstIsAnswered(data) {
            askToUpdate();
            fixture.ask("Quire is up to date", "You’re using the newest available version of Quire.", ["OK"]);
            const before = fixture.pressed.length - 2;
            keyClick(data.key);
            tryVerify(() => question.opened && question.title === "Quire is up to date");
            tryCompare(question.contentItem, "opacity", 1);
            compare(fixture.pressed[before], data.answers[0]);
            compare(fixture.pressed[before + 1], -1);
            verify(button("OK"));
            verify(!button("Later"));
            keyClick(Qt.Key_Return);
            tryCompare(question, "visible", false);
            compare(fixture.pressed[before + 1], data.answers[1]);
        }

        function test_nothingBehindItIsPressed() {
            askToUpdate();
            mouseClick(root, 5, 5); // beside it
            verify(question.visible);
            compare(answer(), -1);
            keyClick(Qt.Key_Escape);
            tryCompare(question, "visible", false);
        }

        function test_itMovesToAnotherWindowUnanswered() {
            askToUpdate();
            root.wanted = false;
            tryCompare(question, "visible", false);
            compare(answer(), -1);
            root.wanted = true;
            tryVerify(() => question.opened);
            keyClick(Qt.Key_Escape);
            tryCompare(question, "visible", false);
            compare(answer(), 1);
        }

        function test_aNoticeHasOneButton() {
            fixture.showNotice("Reading List Update Failed", "Local: no room\nOnline: no token");
            tryVerify(() => notice.opened);
            compare(notice.title, "Reading List Update Failed");
            compare(notice.message, "Local: no room\nOnline: no token");
            compare(notice.buttons.length, 1);
            mouseClick(named("OK", notice.contentItem));
            tryVerify(() => !fixture.hasNotice());
            tryCompare(notice, "visible", false);
        }

        function test_markupIsShownAsItIsWritten() {
            fixture.showNotice("<b>Bold</b>", "<img src='x'> &amp; *stars*");
            tryVerify(() => notice.opened);
            verify(named("<b>Bold</b>", notice.contentItem).textFormat === Text.PlainText);
            compare(named("<img src='x'> &amp; *stars*", notice.contentItem).getText(0, 5), "<img ");
            keyClick(Qt.Key_Escape);
            tryCompare(notice, "visible", false);
        }

        function test_aLongMessageScrollsAndTheButtonStaysInSight() {
            fixture.showNotice("Reading List Update Failed", "Online: a page of an error. ".repeat(400));
            tryVerify(() => notice.opened);
            verify(notice.height < root.height);
            const ok = named("OK", notice.contentItem);
            verify(ok.mapToItem(root, 0, ok.height).y < root.height);
            keyClick(Qt.Key_Escape);
            tryCompare(notice, "visible", false);
        }
    }
}
