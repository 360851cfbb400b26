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
        id: dismissed

        target: view
        signalName: "dismissed"
    }

    TestCase {
        name: "QuireSettingsView"
        when: windowShown

        function named(name, item = view) {
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

        function init() {
            fixture.shell.settings.load();
            fixture.shell.settings.selectedTab = "goodreads";
            dismissed.clear();
        }

        function test_theGoodreadsTabHasItsFieldsAndNotes() {
            for (const words of ["Quire Settings", "Appearance, syncing, publishing, and local data.",
                    "Settings section", "Goodreads User ID", "Goodreads RSS Key", "How to find your Goodreads User ID",
                    "How to obtain the RSS key", "Not published from Quire yet"])
                verify(named(words), words);
        }

        function test_cancelAndEscapeDismiss() {
            mouseClick(named("Cancel"));
            compare(dismissed.count, 1);
            named("User ID").forceActiveFocus();
            keyClick(Qt.Key_Escape);
            compare(dismissed.count, 2);
        }

        function test_theKeyIsNotReadable() {
            verify(named("RSS key from Goodreads").displayText.length === 0);
            fixture.shell.settings.goodreadsKey = "secret";
            const field = named("RSS key from Goodreads");
            compare(field.text, "secret");
            verify(field.displayText.indexOf("s") < 0);
        }

        function test_theKeyboardIsLedToWhatIsRefused_data() {
            return [
                { tag: "Minutes", property: "publishInterval", wrong: 0 },
                { tag: "Local Publishing Folder (Optional)", property: "localPublishPath", wrong: "site" },
                { tag: "Days", property: "backupInterval", wrong: 0 },
                { tag: "Files", property: "maximumBackupFiles", wrong: 0 },
                { tag: "Backup Folder", property: "backupPath", wrong: "backups" },
                { tag: "Library Folder", property: "databaseFolderPath", wrong: "library" }
            ];
        }

        function test_theKeyboardIsLedToWhatIsRefused(setting) {
            fixture.shell.settings[setting.property] = setting.wrong;
            mouseClick(named("Save"));
            tryVerify(() => fixture.hasNotice());
            const typing = root.Window.activeFocusItem;
            verify(typing instanceof TextInput);
            compare(typing.Accessible.name, setting.tag);
            compare(typing.text, String(setting.wrong));
            fixture.shell.activity.dismissNotice();
        }

        function test_zz_savingWhatWasTypedDismisses() {
            mouseClick(named("User ID"));
            keyClick("7");
            compare(fixture.shell.settings.goodreadsUserID, "7");
            mouseClick(named("Save"));
            tryCompare(dismissed, "count", 1);
        }
    }
}
