// What the detail views have in common: the cover, what is known of the title,
// and what the reader may change of it.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

FocusScope {
    id: view

    required property TitleDetailViewModel detail
    required property string stateTitle
    required property string linkTitle
    property int spineMode: CoverPicture.AlwaysSpine
    property int factSpacing: 12
    property alias facts: facts.data // between the title and the pills
    property alias actions: further.data // after the two that both views have

    signal linkRequested(url address)

    implicitWidth: 876
    implicitHeight: 640
    focus: true

    Item {
        id: upper

        anchors.left: parent.left
        anchors.leftMargin: 24
        anchors.right: parent.right
        anchors.rightMargin: 24
        y: 62
        height: 306

        DetailArtwork {
            id: artwork

            width: 190
            height: 286
            source: view.detail.cover
            title: view.detail.title
            spineMode: view.spineMode
        }

        Item {
            anchors.left: artwork.right
            anchors.leftMargin: 24
            anchors.right: parent.right
            height: parent.height

            Column {
                id: words

                width: parent.width
                spacing: view.factSpacing

                QuireText {
                    width: parent.width
                    text: view.detail.title
                    size: 24
                    weight: Font.DemiBold
                    wrapMode: Text.Wrap
                    lineHeight: 1.1
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    Accessible.role: Accessible.Heading
                }
                Column {
                    id: facts

                    width: parent.width
                    spacing: view.factSpacing
                }
                DetailPillRow {
                    width: parent.width
                    model: view.detail.pills
                    visible: view.detail.pills.count > 0
                }
            }
            DetailSummary {
                anchors.top: words.bottom
                anchors.topMargin: view.factSpacing
                anchors.bottom: choices.top
                anchors.bottomMargin: view.factSpacing
                width: parent.width
                text: view.detail.summary
            }
            Row {
                id: choices

                anchors.bottom: parent.bottom
                spacing: 32

                DetailStarRating {
                    title: "My Rating"
                    rating: view.detail.rating
                    onRated: rating => view.detail.rating = rating
                }
                DetailPicker {
                    title: view.stateTitle
                    options: view.detail.states
                    selection: view.detail.state
                    onChosen: word => view.detail.state = word
                }
            }
        }
    }

    DetailNotesField {
        id: notes

        anchors.left: upper.left
        anchors.right: upper.right
        anchors.top: upper.bottom
        anchors.topMargin: 22
        title: "Notes"
        editorHeight: 92
        text: view.detail.notes
        onEdited: text => view.detail.notes = text
    }

    Row {
        anchors.left: upper.left
        anchors.top: notes.bottom
        anchors.topMargin: 14
        spacing: 10

        ProminentButton {
            text: "Save Changes"
            enabled: !view.detail.isWorking
            onClicked: view.detail.save()
        }
        BorderedButton {
            text: view.linkTitle
            symbol: "arrow.up.right"
            enabled: view.detail.hasLink
            onClicked: view.linkRequested(view.detail.link)
        }
        Row {
            id: further

            spacing: 10
        }
    }
}
