#pragma once

#include "host/ComponentPalette.h"

#include <QTreeWidget>

#include <optional>

// The symbol palette: the folders and components of one standard, as the host's palette
// answers them, with folder and component icons. Each entry shows its description in the
// host's description languages (see DescriptionLanguages); an entry without any description
// shows its key. Used by the symbol chooser and by the main dialog's symbol panel.
class CITreeSimbolosPopup final : public QTreeWidget
{
    Q_OBJECT

public:
    explicit CITreeSimbolosPopup(QWidget* parent = nullptr);
    ~CITreeSimbolosPopup() override;

    // The standard selected in the host's palette; nothing without a palette or a selection.
    static std::optional<CENorma> GetNormaSelecionada();

    // Fills the tree with the palette of `standard` (`flags` as the host's palette takes
    // them). On failure the tree shows the error as its only, unselectable line and the error
    // text is returned; an empty text means success.
    KVString carga(const CENorma& standard, int flags);
    // Fills the tree with the standard selected in the host's palette; empty when there is
    // none (the error text says so).
    KVString cargaNormaSelecionada();

    // The languages in which descriptions are looked up; by default the host's.
    void setDescriptionLanguages(const DescriptionLanguages& languages);
    const DescriptionLanguages& descriptionLanguages() const { return m_languages; }

    // The palette entry of a line, of the current line; null for none.
    const CEPasta* entryOf(const QTreeWidgetItem* item) const;
    const CEPasta* currentEntry() const;
    // The line of the first entry with `key` and kind `kind`, or null.
    QTreeWidgetItem* findEntry(const KVString& key, int kind = CEPasta::kComponent) const;

signals:
    // The current line changed; `entry` is null when no entry is current.
    void entrySelected(const CEPasta* entry);

private:
    void fill(QTreeWidgetItem* parent, const std::vector<std::unique_ptr<CEPasta>>& entries);
    void showError(const KVString& error);

    CEPastaTree m_tree;
    DescriptionLanguages m_languages;
};
