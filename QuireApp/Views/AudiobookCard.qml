// Square art gets no spine.

import QtQuick

import Quire

LibraryCard {
    spineMode: CoverPicture.PortraitSpine
}
