"""A Qt window of so many elements, the last of which is a text field with the keyboard focus.

The toolkit answers no search for the focus, so that whoever looks for it has to walk through the whole window.
"""

import sys

from PyQt5.QtWidgets import QApplication, QFrame, QGridLayout, QLabel, QLineEdit, QVBoxLayout, QWidget

COLUMNS = 20


def main():
    application = QApplication(sys.argv)
    window = QWidget()
    window.setWindowTitle(sys.argv[2])
    grid = QGridLayout(window)
    labels = int(sys.argv[1]) - 3  # the window, the frame and the field are elements too
    for index in range(labels):
        grid.addWidget(QLabel(f"Label {index}"), index // COLUMNS, index % COLUMNS)
    frame = QFrame()
    field = QLineEdit("found")
    QVBoxLayout(frame).addWidget(field)
    grid.addWidget(frame, labels // COLUMNS + 1, 0)
    window.show()
    field.setFocus()
    application.exec_()


if __name__ == "__main__":
    main()
