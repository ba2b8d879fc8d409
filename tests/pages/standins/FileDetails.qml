import QtQuick 2.15

// Stands in for the rows of one table in tests of FilesSwipe.
Item {
}
