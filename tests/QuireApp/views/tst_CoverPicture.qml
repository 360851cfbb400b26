import QtQuick
import QtTest

import Quire

Item {
    width: 142
    height: 218

    CoverPicture {
        id: picture

        anchors.fill: parent
        source: fixture.cover("firebrick")
    }

    TestCase {
        name: "CoverPicture"
        when: windowShown

        // Of the next frame, which is drawn for it.
        function colour() {
            return grabImage(picture).pixel(picture.width / 2, picture.height / 2);
        }

        function test_aCoverComesBackWhenItsTitleDoes() {
            tryVerify(() => picture.hasImage);
            picture.source = fixture.cover("teal");
            picture.source = fixture.cover("firebrick"); // before a frame was drawn
            wait(50);
            verify(Qt.colorEqual(colour(), "firebrick"));
        }

        function test_noFrameShowsAnotherTitlesCover() {
            tryVerify(() => picture.hasImage);
            verify(Qt.colorEqual(colour(), "firebrick"));
            picture.source = fixture.cover("steelblue"); // which was never decoded
            verify(!Qt.colorEqual(colour(), "firebrick"));
            tryVerify(() => Qt.colorEqual(colour(), "steelblue"));
            picture.source = fixture.cover("firebrick");
            verify(Qt.colorEqual(colour(), "firebrick"), "what is known is there with the next frame");
        }
    }
}
