import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 400
    height: 300

    DetailSummary {
        id: summary

        width: 400
        text: "line\n".repeat(40).trim()
    }

    TestCase {
        name: "DetailSummary"
        when: windowShown

        function page() {
            for (let i = 0; i < summary.children.length; ++i) {
                if (summary.children[i].Accessible.name === "Summary")
                    return summary.children[i];
            }
            fail("no page");
        }

        function test_noLineIsCutThrough_data() {
            return [80, 91, 100, 111, 137].map(height => ({
                        tag: height,
                        height: height
                    }));
        }

        function test_noLineIsCutThrough(data) {
            summary.height = data.height;
            const line = page().contentHeight / 40;
            const lines = page().height / line;
            verify(lines >= 1 && Math.abs(lines - Math.round(lines)) < 0.01, lines);
            const left = summary.height - page().y - page().height;
            verify(left >= 0 && left < line, left + " are left");
        }
    }
}
