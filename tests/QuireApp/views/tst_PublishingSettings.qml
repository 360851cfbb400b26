import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 820
    height: 620

    QuireSettingsView {
        id: view

        anchors.fill: parent
        settings: fixture.shell.settings
        appearance: fixture.shell.appearance
        canWork: true
    }

    SignalSpy {
        id: linkActivated

        target: view
        signalName: "linkActivated"
    }

    TestCase {
        name: "PublishingSettingsTab"
        when: windowShown

        readonly property string prompt: "Token for the reading website"

        // The visible controls of that name, in the order of the page.
        function allNamed(name, item = view, found = []) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (!child.visible)
                    continue;
                if (child.Accessible.name === name && !child.Accessible.ignored)
                    found.push(child);
                allNamed(name, child, found);
            }
            return found;
        }

        function named(name) {
            const found = allNamed(name);
            verify(found.length > 0, name);
            return found[found.length - 1];
        }

        function field(name) {
            return allNamed(name).find(item => item instanceof TextInput);
        }

        function init() {
            fixture.store("netlifySiteURL", "");
            fixture.store("localPublishPath", "");
            fixture.store("publishIntervalMinutes", "15");
            fixture.store("automaticPublishing", "0");
            fixture.shell.settings.load();
            fixture.shell.settings.selectedTab = "publishing";
            linkActivated.clear();
        }

        function test_theTabHasItsFieldsAndItsNote() {
            for (const words of ["Publishing", "Published Page", "Not connected", "Netlify Token", prompt,
                    "Netlify setup and token instructions", "Local Publishing Folder (Optional)", "Folder", "Clear",
                    "Minutes Between Updates", "Minutes", "Publish automatically while Quire is open",
                    "The local folder is optional. Leave it blank to publish only to Netlify. Automatic publishing is off by default; manual updates remain available in the sidebar."])
                verify(allNamed(words).length > 0, words);
            compare(field("Local Publishing Folder (Optional)").placeholderText, "No local copy");
            compare(field("Minutes").width, 100);
        }

        function test_theFieldsHoldWhatIsStored() {
            fixture.store("localPublishPath", "~/Lists");
            fixture.store("publishIntervalMinutes", "240");
            fixture.store("automaticPublishing", "1");
            fixture.shell.settings.load();
            compare(field("Local Publishing Folder (Optional)").text, "~/Lists");
            compare(field("Minutes").text, "240");
            verify(named("Publish automatically while Quire is open").checked);
        }

        function test_thePublishedPageIsALink() {
            fixture.store("netlifySiteURL", "https://list.example");
            compare(allNamed("Not connected").length, 0);
            const link = named("https://list.example");
            mouseClick(link);
            compare(linkActivated.count, 1);
            compare(linkActivated.signalArguments[0][0].toString(), "https://list.example");
        }

        function test_aLongAddressStaysWithinThePage() {
            const address = "https://" + "a-very-long-name-of-a-site.".repeat(9) + "example/" + "page/".repeat(40);
            fixture.store("netlifySiteURL", address);
            const link = named(address);
            tryVerify(() => link.width > 400); // laid out by the next frame
            verify(link.mapToItem(view, link.width, 0).x <= view.width - 24);
        }

        function test_theInstructionsAreOnTheHelpHost() {
            mouseClick(named("Netlify setup and token instructions"));
            compare(linkActivated.signalArguments[0][0].toString(), "https://help.test/quire/help.html#netlify-setup");
        }

        function test_theTokenIsNotReadable() {
            const token = field(prompt);
            token.forceActiveFocus();
            keyClick("s");
            compare(fixture.shell.settings.netlifyToken, "s");
            verify(token.displayText.indexOf("s") < 0);
        }

        function test_theFolderIsChosenTypedAndCleared() {
            const folder = field("Local Publishing Folder (Optional)");
            fixture.chooseNext("/somewhere/lists");
            mouseClick(named("Folder"));
            tryCompare(folder, "text", "/somewhere/lists");
            folder.forceActiveFocus();
            keyClick(Qt.Key_End);
            keyClick("2");
            compare(fixture.shell.settings.localPublishPath, "/somewhere/lists2");
            mouseClick(named("Clear"));
            compare(folder.text, "");
            compare(fixture.shell.settings.localPublishPath, "");
        }

        function test_theMinutesAreSteppedWithinWhatCanBeSaved() {
            fixture.store("publishIntervalMinutes", "1440");
            fixture.shell.settings.load();
            const minutes = field("Minutes");
            minutes.forceActiveFocus();
            keyClick(Qt.Key_Up);
            compare(fixture.shell.settings.publishInterval, 1441);
            fixture.shell.settings.publishInterval = 10080;
            keyClick(Qt.Key_Up);
            compare(minutes.text, "10080");
            fixture.shell.settings.publishInterval = 1;
            keyClick(Qt.Key_Down);
            compare(minutes.text, "1");
        }

        function test_anIntervalThatCannotBeIsRefused() {
            const minutes = field("Minutes");
            minutes.forceActiveFocus();
            minutes.selectAll();
            for (const digit of "10081")
                keyClick(digit);
            keyClick(Qt.Key_Return);
            tryVerify(() => fixture.hasNotice());
            compare(fixture.shell.activity.noticeTitle, "Invalid Publishing Interval");
            compare(fixture.shell.activity.noticeMessage, "Choose a whole number from 1 to 10,080 minutes.");
            fixture.shell.activity.dismissNotice();
        }

        function test_theSwitchIsThrown() {
            mouseClick(named("Publish automatically while Quire is open"));
            verify(fixture.shell.settings.automaticPublishing);
            mouseClick(named("Publish automatically while Quire is open"));
            verify(!fixture.shell.settings.automaticPublishing);
        }

        function test_theLastUpdateIsToldBelow() {
            fixture.store("publishLastRun", "2026-11-21T11:05:00.000Z");
            const told = fixture.shell.settings.lastUpdatedText;
            verify(told.startsWith("Last update: 21 Nov 2026, 12:05"), told); // the rest is the locale's
            compare(allNamed(told).length, 1);
            fixture.store("publishLastRun", "yesterday");
            verify(allNamed("Not published from Quire yet").length === 1);
        }

        function test_everythingFitsWithoutScrollingAtTheLeastSize() {
            const note = named("The local folder is optional. Leave it blank to publish only to Netlify. Automatic publishing is off by default; manual updates remain available in the sidebar.");
            verify(note.mapToItem(view, 0, note.height).y < named("Save").mapToItem(view, 0, 0).y - 30);
        }

        function test_zz_aSavedTokenIsNotShownAgain() {
            const token = field(prompt);
            token.forceActiveFocus();
            keyClick("s");
            mouseClick(named("Save"));
            tryVerify(() => field("Saved; enter a new token to replace it"));
            fixture.shell.settings.load();
            compare(field("Saved; enter a new token to replace it").text, "");
        }
    }
}
