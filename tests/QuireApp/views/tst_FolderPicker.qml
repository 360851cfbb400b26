import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 820
    height: 620

    FolderPicker {
        id: picker

        folderPicker: fixture.shell.folderPicker
    }

    TestCase {
        name: "FolderPicker"
        when: windowShown

        function named(name, item = picker.contentItem) {
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

        function ask(allowsNewFolders = true) {
            fixture.askForFolder(allowsNewFolders);
            tryCompare(picker, "opened", true);
            tryVerify(() => named("Folder path").text === fixture.folder);
        }

        function cleanup() {
            picker.close();
            tryCompare(picker, "visible", false);
        }

        function test_asksInItsWords() {
            ask();
            for (const words of ["Which folder?", "It will hold the books.", "Up", "Folders", "first", "second", "New Folder",
                    "Cancel", "Take It"])
                verify(named(words), words);
            cleanup();
            ask(false);
            verify(!named("New Folder"));
        }

        function test_aClickChoosesAndReturnEnters() {
            ask();
            mouseClick(named("first"));
            compare(named("Folder path").text, fixture.folder + "/first");
            mouseClick(named("second"));
            keyClick(Qt.Key_Return);
            tryVerify(() => named("No folders in here"));
            compare(named("Folder path").text, fixture.folder + "/second");
            mouseClick(named("Up"));
            tryVerify(() => named("first"));
            mouseClick(named("second"));
            mouseClick(named("Take It"));
            tryCompare(picker, "visible", false);
            compare(fixture.folderAnswer, fixture.folder + "/second");
        }

        function test_theKeyboardWalksAndChooses() {
            ask();
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            compare(named("Folder path").text, fixture.folder + "/second");
            keyClick(Qt.Key_Return);
            tryVerify(() => named("No folders in here"));
            keyClick(Qt.Key_Backspace);
            tryVerify(() => named("first"));
            keyClick(Qt.Key_Escape);
            tryCompare(picker, "visible", false);
            compare(fixture.folderAnswer, "");
        }

        function test_aPathIsTyped() {
            ask();
            const path = named("Folder path");
            path.forceActiveFocus();
            path.selectAll();
            keyClick("x");
            mouseClick(named("Take It"));
            tryVerify(() => named("There is no folder “x”."));
            verify(picker.opened);
            path.text = fixture.folder + "/first";
            path.forceActiveFocus();
            keyClick(Qt.Key_Return);
            tryVerify(() => named("No folders in here"));
        }

        function test_aNewFolderIsMadeAndEntered() {
            ask();
            mouseClick(named("New Folder"));
            verify(!named("Create").enabled);
            keyClick("x");
            keyClick(Qt.Key_Return);
            tryVerify(() => named("Folder path").text === fixture.folder + "/x");
            verify(named("New Folder"));
            mouseClick(named("Take It"));
            tryCompare(picker, "visible", false);
            compare(fixture.folderAnswer, fixture.folder + "/x");
        }

        function test_escapeInTheNameKeepsThePickerOpen() {
            ask();
            mouseClick(named("New Folder"));
            keyClick("n");
            keyClick(Qt.Key_Escape);
            verify(named("New Folder"));
            verify(picker.opened);
        }
    }
}
