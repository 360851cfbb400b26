// A cover known by its address alone, filling its frame; the placeholder until
// it has come, and when it does not come.

import QtQuick

import Quire

CoverImage {
    id: frame

    property url url

    source: cover.source
    contentMode: CoverPicture.Fill

    RemoteCover {
        id: cover

        url: frame.url
    }
}
