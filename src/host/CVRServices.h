#pragma once

#include "CVRQuery.h"
#include "KVString.h"
#include "LongOperation.h"

#include <QList>

#include <memory>

class CFxDocument;
class CVRCommandManager;

// The host's electrical services.
class CVRServices
{
public:
    virtual ~CVRServices() = default;

    virtual CVRCommandManager* GetCommandManager() = 0;
    // Runs one query on the standard's database (read only) and answers it.
    virtual CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) = 0;
    // The current language of the database's descriptions, as decimal text.
    virtual KVString GetCurrentLanguage() = 0;
    // The host's description languages, ascending.
    virtual QList<int> GetDescriptionLanguages() = 0;
    // The working folder, under which "Automatic Insertion" holds the user's files.
    virtual KVString GetWorkingFolder() = 0;
    // The base folder of the standards' data ("...\" + "Dados\" + standard + "\BLOCOS\").
    virtual KVString GetBaseFolder() = 0;
    // The long-operation runner of a document; null when the host has none.
    virtual ILongOperationRunner* GetLongOperationRunner(CFxDocument* document) = 0;
    // The ready-made query for one property value of one component.
    virtual CVRQueryResponse GetComponentPropertyValue(const KVString& componentKey,
                                                       const KVString& propertyName) = 0;
    // The block name ("KV_DWG") of a component in a standard, trimmed; empty when unknown.
    virtual KVString GetComponentBlockName(const KVString& componentKey,
                                           const KVString& standard) = 0;
};

CVRServices* GetElectricalServices();

// The folder where the module's file dialogs start: the working folder followed by
// "/Automatic Insertion"; empty when there are no services or they report no working folder.
KVString kvAutomaticInsertionFolder();
