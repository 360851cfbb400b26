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

        function test_aCoverComesBackWhenItsTitleDoes() {
            tryVerify(() => picture.hasImage);
            picture.source = fixture.cover("teal");
            verify(!picture.hasImage, "never another title's cover");
            picture.source = fixture.cover("firebrick"); // before a frame was drawn
            tryVerify(() => picture.hasImage);
        }
    }
}
