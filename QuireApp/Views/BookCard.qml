import QtQuick

import Quire

LibraryCard {
    spineMode: CoverPicture.AlwaysSpine
}
