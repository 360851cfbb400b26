// Square art gets no spine.

import Quire

LibraryCard {
    spineMode: CoverPicture.PortraitSpine
}
