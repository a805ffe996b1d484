<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR">
<context>
    <name>KVInsertAuto</name>
    <message>
        <location filename="../../engine/AssociatedComponents.cpp" line="42"/>
        <source>
Error: Associated component not found: key = %1</source>
        <translation>
Erro: componente associado não encontrado: chave = %1</translation>
    </message>
    <message>
        <location filename="../../engine/CInsAutoLogic.cpp" line="131"/>
        <source>Automatic insertion completed</source>
        <translation>Inserção automática concluída</translation>
    </message>
    <message>
        <location filename="../../engine/ComponentResolver.cpp" line="111"/>
        <source>The component was not found on this standard</source>
        <translation>O componente não foi encontrado nesta norma</translation>
    </message>
    <message>
        <location filename="../../engine/ComponentResolver.cpp" line="144"/>
        <source>Component has empty block name</source>
        <translation>O componente está com o nome do bloco vazio</translation>
    </message>
    <message>
        <location filename="../../engine/ComponentResolver.cpp" line="153"/>
        <source>The file %1.dwg was not found.</source>
        <translation>O arquivo %1.dwg não foi encontrado.</translation>
    </message>
    <message>
        <location filename="../../import/CCImportarDados.cpp" line="119"/>
        <location filename="../../import/CCImportarDados.cpp" line="131"/>
        <source>Error loading data from spreadsheet.</source>
        <translation>Erro ao carregar os dados da planilha.</translation>
    </message>
    <message>
        <location filename="../../import/CellFormats.cpp" line="87"/>
        <source>part %1 lists more than %2 formats</source>
        <translation>a parte %1 lista mais de %2 formatos</translation>
    </message>
    <message>
        <location filename="../../maindialog/TVNodeData.cpp" line="9"/>
        <location filename="../../settings/SettingsModes.cpp" line="28"/>
        <source>Page</source>
        <translation>Página</translation>
    </message>
    <message>
        <location filename="../../maindialog/TVNodeData.cpp" line="11"/>
        <location filename="../../settings/SettingsModes.cpp" line="27"/>
        <source>Horizontal space</source>
        <translation>Espaço horizontal</translation>
    </message>
    <message>
        <location filename="../../maindialog/TVNodeData.cpp" line="13"/>
        <location filename="../../settings/SettingsModes.cpp" line="29"/>
        <source>Vertical space</source>
        <translation>Espaço vertical</translation>
    </message>
    <message>
        <location filename="../../import/ItemImport.cpp" line="110"/>
        <source>Invalid configuration file. The following properties do not exist: </source>
        <translation>Arquivo de configuração inválido. As seguintes propriedades não existem: </translation>
    </message>
    <message>
        <location filename="../../import/SharedStringTable.cpp" line="42"/>
        <source>part %1 holds more than %2 shared strings</source>
        <translation>a parte %1 contém mais de %2 strings compartilhadas</translation>
    </message>
    <message>
        <location filename="../../import/SharedStringTable.cpp" line="50"/>
        <source>part %1 holds more than %2 characters of shared strings</source>
        <translation>a parte %1 contém mais de %2 caracteres de strings compartilhadas</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="165"/>
        <source>part %1 holds a row with the invalid number &quot;%2&quot;</source>
        <translation>a parte %1 contém uma linha com o número inválido &quot;%2&quot;</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="171"/>
        <source>part %1 holds row %2, beyond the last row %3 a sheet can have</source>
        <translation>a parte %1 contém a linha %2, além da última linha (%3) que uma aba pode ter</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="178"/>
        <source>part %1 holds row %2 after row %3; rows must come in ascending order</source>
        <translation>a parte %1 contém a linha %2 depois da linha %3; as linhas devem vir em ordem crescente</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="233"/>
        <source>part %1 holds more than %2 cells</source>
        <translation>a parte %1 contém mais de %2 células</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="245"/>
        <source>part %1 holds a cell with the invalid reference &quot;%2&quot; in row %3</source>
        <translation>a parte %1 contém uma célula com a referência inválida &quot;%2&quot; na linha %3</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="257"/>
        <source>part %1 holds a cell in column %2 of row %3, beyond the last column %4 a sheet can have</source>
        <translation>a parte %1 contém uma célula na coluna %2 da linha %3, além da última coluna (%4) que uma aba pode ter</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="305"/>
        <source>cell %1 of part %2 refers to shared string &quot;%3&quot;, but the workbook has %4 shared strings</source>
        <translation>a célula %1 da parte %2 remete à string compartilhada &quot;%3&quot;, mas a pasta de trabalho tem %4 strings compartilhadas</translation>
    </message>
    <message>
        <location filename="../../import/SheetCursor.cpp" line="319"/>
        <source>row %1 of part %2 holds more than %3 characters</source>
        <translation>a linha %1 da parte %2 contém mais de %3 caracteres</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookError.cpp" line="9"/>
        <source>The spreadsheet &quot;%1&quot; cannot be read: %2</source>
        <translation>Não é possível ler a planilha &quot;%1&quot;: %2</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="103"/>
        <location filename="../../import/WorkbookIndex.cpp" line="275"/>
        <location filename="../../import/ZipPackage.cpp" line="116"/>
        <source>part %1 is missing</source>
        <translation>a parte %1 não existe</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="115"/>
        <source>sheet &quot;%1&quot; refers to relationship &quot;%2&quot;, which %3 does not hold</source>
        <translation>a aba &quot;%1&quot; remete ao relacionamento &quot;%2&quot;, que %3 não contém</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="121"/>
        <source>sheet &quot;%1&quot; points outside the workbook package</source>
        <translation>a aba &quot;%1&quot; aponta para fora do pacote da pasta de trabalho</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="125"/>
        <source>sheet &quot;%1&quot; points to part %2, which is not a worksheet</source>
        <translation>a aba &quot;%1&quot; aponta para a parte %2, que não é uma planilha</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="161"/>
        <source>part %1 is missing, so it is not an .xlsx or .xlsm workbook</source>
        <translation>a parte %1 não existe, portanto não é uma pasta de trabalho .xlsx ou .xlsm</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="179"/>
        <source>part %1 lists more than %2 content types</source>
        <translation>a parte %1 lista mais de %2 tipos de conteúdo</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="217"/>
        <source>part %1 lists more than %2 relationships</source>
        <translation>a parte %1 lista mais de %2 relacionamentos</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="264"/>
        <source>it has no workbook part, so it is not an .xlsx or .xlsm workbook</source>
        <translation>não tem a parte da pasta de trabalho, portanto não é uma pasta de trabalho .xlsx ou .xlsm</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="269"/>
        <source>its main part %1 is not a workbook (content type &quot;%2&quot;), so it is not an .xlsx or .xlsm workbook</source>
        <translation>sua parte principal %1 não é uma pasta de trabalho (tipo de conteúdo &quot;%2&quot;), portanto não é uma pasta de trabalho .xlsx ou .xlsm</translation>
    </message>
    <message>
        <location filename="../../import/WorkbookIndex.cpp" line="298"/>
        <source>part %1 lists more than %2 sheets</source>
        <translation>a parte %1 lista mais de %2 abas</translation>
    </message>
    <message>
        <location filename="../../import/XmlPartReader.cpp" line="36"/>
        <source>part %1 is not well-formed XML (line %2, column %3: %4)</source>
        <translation>a parte %1 não é um XML bem formado (linha %2, coluna %3: %4)</translation>
    </message>
    <message>
        <location filename="../../import/XmlPartReader.cpp" line="53"/>
        <source>part %1 holds a document type declaration, which workbooks never have</source>
        <translation>a parte %1 contém uma declaração de tipo de documento, que pastas de trabalho nunca têm</translation>
    </message>
    <message>
        <location filename="../../import/XmlPartReader.cpp" line="58"/>
        <source>part %1 nests elements more than %2 deep</source>
        <translation>a parte %1 aninha elementos em mais de %2 níveis</translation>
    </message>
    <message>
        <location filename="../../import/XmlPartReader.cpp" line="94"/>
        <source>part %1 holds a text longer than %2 characters, the limit for one cell</source>
        <translation>a parte %1 contém um texto com mais de %2 caracteres, o limite para uma célula</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="29"/>
        <source>it is an old-format (.xls) or password-protected workbook, not an .xlsx or .xlsm file</source>
        <translation>é uma pasta de trabalho no formato antigo (.xls) ou protegida por senha, não um arquivo .xlsx ou .xlsm</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="39"/>
        <source>it is not a zip archive, so not an .xlsx or .xlsm workbook (the file is damaged or of another kind)</source>
        <translation>não é um arquivo zip, portanto não é uma pasta de trabalho .xlsx ou .xlsm (o arquivo está danificado ou é de outro tipo)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="42"/>
        <source>its zip structure is inconsistent (the file is damaged or truncated)</source>
        <translation>sua estrutura zip é inconsistente (o arquivo está danificado ou truncado)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="44"/>
        <source>there is not enough memory to open it</source>
        <translation>não há memória suficiente para abri-lo</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="50"/>
        <source>it cannot be opened as a zip archive (%1)</source>
        <translation>não pode ser aberto como arquivo zip (%1)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="72"/>
        <source>the file does not exist</source>
        <translation>o arquivo não existe</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="74"/>
        <source>it is a folder, not a file</source>
        <translation>é uma pasta, não um arquivo</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="77"/>
        <source>the file cannot be opened (%1)</source>
        <translation>o arquivo não pode ser aberto (%1)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="79"/>
        <source>the file is empty</source>
        <translation>o arquivo está vazio</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="93"/>
        <source>the zip archive holds %1 entries, more than the limit of %2</source>
        <translation>o arquivo zip contém %1 entradas, mais que o limite de %2</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="122"/>
        <location filename="../../import/ZipPackage.cpp" line="143"/>
        <source>part %1 cannot be read (%2)</source>
        <translation>a parte %1 não pode ser lida (%2)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="127"/>
        <source>part %1 declares %2 bytes uncompressed, more than the limit of %3 bytes for one part</source>
        <translation>a parte %1 declara %2 bytes descompactados, mais que o limite de %3 bytes para uma parte</translation>
    </message>
    <message>
        <location filename="../../import/ZipPackage.cpp" line="135"/>
        <source>the workbook decompresses to more than %1 bytes in total, the limit for one workbook (reached before part %2)</source>
        <translation>a pasta de trabalho descompactada ultrapassa %1 bytes no total, o limite para uma pasta de trabalho (atingido antes da parte %2)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPartDevice.cpp" line="33"/>
        <source>the compressed data of part %1 is damaged (%2)</source>
        <translation>os dados compactados da parte %1 estão danificados (%2)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPartDevice.cpp" line="40"/>
        <source>part %1 decompresses to more than %2 bytes, the limit for one part</source>
        <translation>a parte %1 descompactada ultrapassa %2 bytes, o limite para uma parte</translation>
    </message>
    <message>
        <location filename="../../import/ZipPartDevice.cpp" line="46"/>
        <source>the workbook decompresses to more than %1 bytes in total, the limit for one workbook (reached while reading part %2)</source>
        <translation>a pasta de trabalho descompactada ultrapassa %1 bytes no total, o limite para uma pasta de trabalho (atingido durante a leitura da parte %2)</translation>
    </message>
    <message>
        <location filename="../../import/ZipPartDevice.cpp" line="59"/>
        <source>part %1 holds more than %2 bytes without markup, more than a cell can hold</source>
        <translation>a parte %1 contém mais de %2 bytes sem marcação, mais do que cabe em uma célula</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsWriter.cpp" line="20"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="266"/>
        <location filename="../../settingsui/SettingsDialogData.cpp" line="38"/>
        <source>Yes</source>
        <translation>Sim</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsWriter.cpp" line="66"/>
        <source>Error saving settings file.</source>
        <translation>Erro ao salvar o arquivo de configuração.</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="239"/>
        <source>Settings - Automatic insertion</source>
        <translation>Configuração - Inserção automática</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="240"/>
        <source>Items:</source>
        <translation>Itens:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="241"/>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="54"/>
        <source>Field list:</source>
        <translation>Lista de campos:</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="258"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="242"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="246"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="250"/>
        <location filename="../../settingsui/IDlgComps.cpp" line="66"/>
        <source>Add</source>
        <translation>Adicionar</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="268"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="243"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="247"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="251"/>
        <source>Remove</source>
        <translation>Remover</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="256"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="244"/>
        <location filename="../../settingsui/IDlgComps.cpp" line="63"/>
        <source>Symbols:</source>
        <translation>Símbolos:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="245"/>
        <location filename="../../settingsui/IDlgComps.cpp" line="64"/>
        <source>List of Symbols:</source>
        <translation>Lista de símbolos:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="248"/>
        <source>Blocks</source>
        <translation>Blocos</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="249"/>
        <source>List of blocks:</source>
        <translation>Lista de blocos:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="252"/>
        <source>Spacing</source>
        <translation>Espaçamento</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="253"/>
        <source>Previous:</source>
        <translation>Anterior:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="254"/>
        <source>Next:</source>
        <translation>Posterior:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="255"/>
        <source>Separator:</source>
        <translation>Separador:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="256"/>
        <source>Pagination:</source>
        <translation>Paginação:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="257"/>
        <source>Initial point:</source>
        <translation>Ponto inicial:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="258"/>
        <source>Page size:</source>
        <translation>Tamanho da página:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="259"/>
        <source>Space:</source>
        <translation>Espaço:</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="260"/>
        <source>Save</source>
        <translation>Salvar</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="259"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="261"/>
        <source>Close</source>
        <translation>Fechar</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="263"/>
        <location filename="../../settingsui/widgets/CIListViewPropriedade.cpp" line="11"/>
        <source>Field</source>
        <translation>Campo</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="264"/>
        <source>Attribute</source>
        <translation>Atributo</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="265"/>
        <source>Search</source>
        <translation>Pesquisa</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="266"/>
        <source>Show</source>
        <translation>Exibir</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="266"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="350"/>
        <location filename="../../settingsui/SettingsDialogData.cpp" line="38"/>
        <source>No</source>
        <translation>Não</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="267"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="272"/>
        <source>Block</source>
        <translation>Bloco</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="268"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="273"/>
        <source>Point</source>
        <translation>Ponto</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="269"/>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="274"/>
        <source>Angle</source>
        <translation>Ângulo</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="270"/>
        <source>Drawing files (*.dwg)|*.dwg||</source>
        <translation>Arquivos de desenho (*.dwg)|*.dwg||</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="271"/>
        <location filename="../../settingsui/SettingsFilePicker.cpp" line="10"/>
        <location filename="../../settingsui/widgets/CIListViewEdit.cpp" line="258"/>
        <source>All Files (*.*)|*.*||</source>
        <translation>Todos os arquivos (*.*)|*.*||</translation>
    </message>
    <message>
        <location filename="../../settingsui/CIConfigAuto.cpp" line="315"/>
        <source>Settings: </source>
        <translation>Configuração: </translation>
    </message>
    <message>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="53"/>
        <source>Edit item</source>
        <translation>Editar item</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="263"/>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="53"/>
        <source>Add item</source>
        <translation>Adicionar item</translation>
    </message>
    <message>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="55"/>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <location filename="../../settingsui/IAdicionaItem.cpp" line="56"/>
        <location filename="../../settingsui/IDlgComps.cpp" line="65"/>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <location filename="../../settingsui/SettingsFilePicker.cpp" line="9"/>
        <source>Settings file (*.cfa)|*.cfa||</source>
        <translation>Arquivo de configuração (*.cfa)|*.cfa||</translation>
    </message>
    <message>
        <location filename="../../settingsui/widgets/CIListViewPropriedade.cpp" line="12"/>
        <source>Value</source>
        <translation>Valor</translation>
    </message>
    <message>
        <location filename="../../settingsui/widgets/CITreeSimbolosPopup.cpp" line="46"/>
        <location filename="../../settingsui/widgets/CITreeSimbolosPopup.cpp" line="47"/>
        <source>The host has no component palette.</source>
        <translation>O programa não oferece uma paleta de componentes.</translation>
    </message>
    <message>
        <location filename="../../settingsui/widgets/CITreeSimbolosPopup.cpp" line="66"/>
        <source>No standard is selected in the component palette.</source>
        <translation>Nenhuma norma está selecionada na paleta de componentes.</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsModes.cpp" line="25"/>
        <source>Automatic</source>
        <translation>Automático</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsModes.cpp" line="26"/>
        <source>Automatic+space</source>
        <translation>Automático+espaço</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsModes.cpp" line="34"/>
        <source>Create page</source>
        <translation>Criar página</translation>
    </message>
    <message>
        <location filename="../../settings/SettingsModes.cpp" line="35"/>
        <source>Using Page</source>
        <translation>Usar páginas existentes</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="253"/>
        <source>Automatic insertion</source>
        <translation>Inserção automática</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="254"/>
        <source>Item list:</source>
        <translation>Lista de itens:</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="261"/>
        <source>Setup</source>
        <translation>Configurar</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="262"/>
        <source>Import</source>
        <translation>Importar</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="264"/>
        <source>Copy item</source>
        <translation>Copiar item</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="265"/>
        <source>Add symbol</source>
        <translation>Adicionar símbolo</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="266"/>
        <source>Add page</source>
        <translation>Adicionar página</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="267"/>
        <source>Add space</source>
        <translation>Adicionar espaço</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="255"/>
        <source>Items not imported:</source>
        <translation>Itens não importados:</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="257"/>
        <source>Symbols selected:</source>
        <translation>Símbolos selecionados:</translation>
    </message>
    <message>
        <location filename="../../maindialog/CIInsereAuto.cpp" line="260"/>
        <source>Finalize</source>
        <translation>Concluir</translation>
    </message>
</context>
</TS>
