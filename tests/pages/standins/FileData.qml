import QtQuick 2.15

// Stands in for the list of tables in tests of FilesSwipe: only its signal matters there.
Item {
    signal fileSelected(int fileNb)
}
