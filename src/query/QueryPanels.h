#pragma once

#include <QWidget>

class PanelSplitter;

// Where the parts of a query window lie: the run bar, the editor's panel, the splitter, the results
// and the status bar.
class QueryPanels : public QObject {
    Q_OBJECT
public:
    // None is owned, but form becomes the parent of the others; all outlive this.
    struct Parts {
        QWidget& form;
        QWidget& runBar;
        QWidget& editor;
        QWidget& results;
        QWidget& statusBar;
    };
    explicit QueryPanels(const Parts& parts);

    // For the form's present size.
    void layOut();
    // The smallest form that cuts nothing off at its sides.
    QSize smallestForm() const;
    // As if a person had moved the splitter there; twips.
    void setChosenTop(int top);

Q_SIGNALS:
    // A person moved the splitter; twips.
    void splitterChosen(int top);

private:
    void wireSplitter();
    void showBar();
    void dragBar(int y);
    void releaseBar();
    void choose(int top);
    void stepSplitter(int offset);
    int draggedTop(int candidate) const;
    int innerHeight() const;
    int editorTop() const;
    int highestSplitter() const;

    Parts m_parts;
    QWidget* picPanelTopRight;
    PanelSplitter* imgSplitterVertical;
    QWidget* picSplitterVertical;
    // All in twips.
    int m_chosenTop = 0; // of the splitter; 0 as long as nobody moved it
    int m_splitterTop = 0;
    int m_barTop = 0;
    int m_resultsHeight = 0;
};
