import Quire

LibraryCard {
    spineMode: CoverPicture.AlwaysSpine
}
