#pragma once

#include <QString>

// Names of the drawing variables through which the reference host and the module's run talk.
namespace RefHost::DrawingVariableNames {

inline const QString kStandard = QStringLiteral("*NORMA_UTILIZADA*");
inline const QString kNetworkDir = QStringLiteral("*DIRETORIO_REDE*");
inline const QString kPageList = QStringLiteral("*L_PAGINAS*");
inline const QString kComponentKey = QStringLiteral("KV_KEY");
inline const QString kBlockName = QStringLiteral("KV_DWG");
inline const QString kAttributes = QStringLiteral("PBLLSTREGCAUTO");
inline const QString kAssociated = QStringLiteral("PBLLSTVINCAUTO");

} // namespace RefHost::DrawingVariableNames
