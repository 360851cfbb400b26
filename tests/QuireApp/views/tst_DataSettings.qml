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
        id: logsRequested

        target: view
        signalName: "logsRequested"
    }
    SignalSpy {
        id: dataFolderRequested

        target: view
        signalName: "dataFolderRequested"
    }

    TestCase {
        name: "DataSettingsTab"
        when: windowShown

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

        function field(name) {
            return allNamed(name).find(item => item instanceof TextInput);
        }

        function init() {
            fixture.shell.settings.load();
            fixture.shell.settings.selectedTab = "data";
        }

        function test_theTabHasItsFieldsNotesAndButtons() {
            for (const words of ["Data & Backups", "Library Folder",
                    "Quire keeps the database in Application Support by default. A locally synchronized Dropbox, iCloud Drive, Google Drive, or other cloud folder can be shared between Macs. Use Quire on only one Mac at a time, close it, and let the service finish syncing before opening it elsewhere.",
                    "Backup Folder", "Automatic Backups", "Every", "Days", "day", "Keep", "Files", "files",
                    "Backup timing is independent from publishing. Sync-related safety backups respect this interval, and Quire keeps only the newest number of files you choose.",
                    "Back Up Database", "Open Backups", "Open Data Folder", "Open Logs"])
                verify(allNamed(words).length > 0, words);
            compare(allNamed("Folder").length, 2);
            compare(allNamed("Default").length, 2);
            compare(allNamed("Goodreads User ID").length, 0);
        }

        function test_theFieldsHoldWhatIsStored() {
            compare(field("Library Folder").text, fixture.shell.settings.databaseFolderPath);
            compare(field("Backup Folder").text, fixture.shell.settings.backupPath);
            compare(field("Days").text, "1");
            compare(field("Files").text, "20");
        }

        function test_theKeyboardIsFollowedDownThePage() {
            const last = allNamed("Open Logs")[0];
            const foot = () => last.mapToItem(view, 0, last.height).y;
            root.height = 420; // a window that a desktop made smaller than it asks for
            tryVerify(() => foot() > root.height);
            last.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => foot() < allNamed("Save")[0].mapToItem(view, 0, 0).y);
            root.height = 620;
        }

        function test_oneIsADayAndMoreAreDays() {
            field("Days").forceActiveFocus();
            keyClick("2");
            compare(fixture.shell.settings.backupInterval, 2);
            compare(allNamed("day").length, 0);
            compare(allNamed("days").length, 1);
        }

        function test_theDefaultsFillTheFields() {
            const folders = [field("Library Folder"), field("Backup Folder")];
            for (const folder of folders) {
                folder.forceActiveFocus();
                folder.selectAll();
                keyClick("x");
                compare(folder.text, "x");
            }
            const defaults = allNamed("Default");
            mouseClick(defaults[0]);
            mouseClick(defaults[1]);
            compare(folders[1].text, folders[0].text + "/Database Backups");
            compare(folders[0].text, fixture.shell.settings.databaseFolderPath);
        }

        function test_everythingFitsWithoutScrollingAtTheLeastSize() {
            const last = allNamed("Open Logs")[0];
            verify(last.mapToItem(view, 0, last.height).y < allNamed("Save")[0].mapToItem(view, 0, 0).y - 30);
        }

        function test_theDesktopIsAskedForByTheWindow() {
            mouseClick(allNamed("Open Logs")[0]);
            compare(logsRequested.count, 1);
            mouseClick(allNamed("Open Data Folder")[0]);
            compare(dataFolderRequested.count, 1);
        }

        function test_theTabsAreReachedWithTheArrowKeys() {
            allNamed("Data")[0].forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Left);
            compare(fixture.shell.settings.selectedTab, "publishing");
            keyClick(Qt.Key_Right);
            compare(fixture.shell.settings.selectedTab, "data");
        }
    }
}
