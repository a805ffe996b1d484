#pragma once

#include <QString>

// Names of the drawing variables and drawing-language functions the insertion engine shares
// with the drawing environment.
namespace InsAutoNames {

inline const QString kStandardVar = QStringLiteral("*NORMA_UTILIZADA*");
inline const QString kNetworkDirVar = QStringLiteral("*DIRETORIO_REDE*");
inline const QString kAutoInsertionVar = QStringLiteral("*INSERCAO_AUTOMATICA*");
inline const QString kPageListVar = QStringLiteral("*L_PAGINAS*");
inline const QString kAssociatedVar = QStringLiteral("PBLLSTVINCAUTO");
inline const QString kAttributesVar = QStringLiteral("PBLLSTREGCAUTO");

inline const QString kInsertFunction = QStringLiteral("inserirAuto");
inline const QString kBuildPageListsFunction = QStringLiteral("monta_listas_de_paginas_globais");
inline const QString kThawPageFunction = QStringLiteral("Descongela_as_layers_da_pagina");
inline const QString kCreatePageFunction = QStringLiteral("criarpagina");
inline const QString kRunStartFunction = QStringLiteral("inicioInsAuto");
inline const QString kRunEndFunction = QStringLiteral("fimInsAuto");
inline const QString kUpdateMacrosFunction = QStringLiteral("atualizarMacros");

} // namespace InsAutoNames
