<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>Library</name>
    <message>
        <source>%1% %%</source>
        <translation>%1%&#xa0;%%</translation>
    </message>
    <message>
        <source>%1% of %2%</source>
        <translation>%1% von %2%</translation>
    </message>
    <message>
        <source>Shows the amounts. Click to hide them.</source>
        <translation>Zeigt die Mengen. Klicken Sie, um sie auszublenden.</translation>
    </message>
    <message>
        <source>Shows no numbers. Click to show the percentage.</source>
        <translation>Zeigt keine Zahlen. Klicken Sie, um den Prozentsatz zu sehen.</translation>
    </message>
    <message>
        <source>Shows the percentage. Click to show the amounts.</source>
        <translation>Zeigt den Prozentsatz. Klicken Sie, um die Mengen zu sehen.</translation>
    </message>
    <message>
        <source>Downloading %1%</source>
        <translation>%1% wird heruntergeladen</translation>
    </message>
    <message>
        <source>Checking catalogs</source>
        <translation>Kataloge werden geprüft</translation>
    </message>
    <message>
        <source>Checking </source>
        <translation>Prüfung von </translation>
    </message>
    <message>
        <source>Asking the service about %1%</source>
        <translation>Abfrage des Dienstes zu %1%</translation>
    </message>
    <message>
        <source>KB</source>
        <translation>KB</translation>
    </message>
    <message>
        <source>No filter</source>
        <translation>Kein Filter</translation>
    </message>
    <message>
        <source>Cabinet</source>
        <translation>Schrank</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Stütze</translation>
    </message>
    <message>
        <source>Countertop</source>
        <translation>Arbeitsplatte</translation>
    </message>
    <message>
        <source>Curtain wall</source>
        <translation>Vorhangfassade</translation>
    </message>
    <message>
        <source>Dimension</source>
        <translation>Bemaßung</translation>
    </message>
    <message>
        <source>Door</source>
        <translation>Tür</translation>
    </message>
    <message>
        <source>Electrical</source>
        <translation>Elektro</translation>
    </message>
    <message>
        <source>Fixture</source>
        <translation>Installationsobjekt</translation>
    </message>
    <message>
        <source>Furniture</source>
        <translation>Möbel</translation>
    </message>
    <message>
        <source>Molding</source>
        <translation>Zierleiste</translation>
    </message>
    <message>
        <source>Railing</source>
        <translation>Geländer</translation>
    </message>
    <message>
        <source>Roof</source>
        <translation>Dach</translation>
    </message>
    <message>
        <source>Stairs</source>
        <translation>Treppe</translation>
    </message>
    <message>
        <source>Wall</source>
        <translation>Wand</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Contact the manufacturer for more information about its products.</source>
        <translation>Weitere Auskünfte über die Produkte erhalten Sie beim Hersteller.</translation>
    </message>
    <message>
        <source>A preference has an unexpected type: %1%</source>
        <translation>Eine Einstellung hat einen unerwarteten Typ: %1%</translation>
    </message>
    <message>
        <source>The file %1% cannot be written.</source>
        <translation>Die Datei %1% kann nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>Reason</name>
    <message>
        <source>is not a path</source>
        <translation>Das ist kein Pfad</translation>
    </message>
    <message>
        <source>does not exist</source>
        <translation>Die Datei ist nicht vorhanden</translation>
    </message>
    <message>
        <source>does not exist: %1 is not a folder</source>
        <translation>Die Datei ist nicht vorhanden: %1 ist kein Ordner</translation>
    </message>
    <message>
        <source>is a link to something that cannot be found</source>
        <translation>Das ist eine Verknüpfung, deren Ziel nicht zu finden ist</translation>
    </message>
    <message>
        <source>is a folder, not a file</source>
        <translation>Das ist ein Ordner und keine Datei</translation>
    </message>
    <message>
        <source>is not a file</source>
        <translation>Das ist keine Datei</translation>
    </message>
    <message>
        <source>is larger than %1</source>
        <translation>Die Datei ist größer als %1</translation>
    </message>
    <message>
        <source>cannot be opened for reading; may you read it, and does no other program write it?</source>
        <translation>Die Datei kann nicht zum Lesen geöffnet werden; dürfen Sie sie lesen, und schreibt kein anderes Programm sie?</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>Das Lesen ist nicht möglich</translation>
    </message>
    <message>
        <source>cannot be read: %1</source>
        <translation>Das Lesen ist nicht möglich: %1</translation>
    </message>
    <message>
        <source>cannot be written</source>
        <translation>Das Schreiben ist nicht möglich</translation>
    </message>
    <message>
        <source>cannot be written: %1</source>
        <translation>Das Schreiben ist nicht möglich: %1</translation>
    </message>
    <message>
        <source>cannot be created as a folder: %1</source>
        <translation>Der Ordner kann nicht angelegt werden: %1</translation>
    </message>
    <message>
        <source>already exists</source>
        <translation>Die Datei ist bereits vorhanden</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>Die Datei ist leer</translation>
    </message>
    <message>
        <source>is not a library catalog</source>
        <translation>Die Datei ist kein Bibliothekskatalog</translation>
    </message>
    <message>
        <source>is a database, but not a library catalog</source>
        <translation>Die Datei ist eine Datenbank, aber kein Bibliothekskatalog</translation>
    </message>
    <message>
        <source>was made by a newer version of velk (format %1, this one reads %2)</source>
        <translation>Die Datei stammt von einer neueren Version von velk (Format %1, diese Version liest %2)</translation>
    </message>
    <message>
        <source>is damaged: %1</source>
        <translation>Die Datei ist beschädigt: %1</translation>
    </message>
    <message>
        <source>is damaged: it ends within its header</source>
        <translation>Die Datei ist beschädigt: Sie endet im Dateikopf</translation>
    </message>
    <message>
        <source>is damaged: it has no format number</source>
        <translation>Die Datei ist beschädigt: Ihr fehlt die Formatnummer</translation>
    </message>
    <message>
        <source>is damaged: it is cut off after %1 of %2 bytes</source>
        <translation>Die Datei ist beschädigt: Sie bricht nach %1 von %2 Bytes ab</translation>
    </message>
    <message>
        <source>is damaged: it holds something other than a catalog&apos;s tables</source>
        <translation>Die Datei ist beschädigt: Sie enthält anderes als die Tabellen eines Katalogs</translation>
    </message>
    <message>
        <source>is damaged: its table &quot;%1&quot; is not as it should be</source>
        <translation>Die Datei ist beschädigt: Ihre Tabelle „%1“ ist nicht so, wie sie sein soll</translation>
    </message>
    <message>
        <source>a text is missing</source>
        <translation>Ein Text fehlt</translation>
    </message>
    <message>
        <source>it holds more text than a catalog can</source>
        <translation>Sie enthält mehr Text, als ein Katalog haben kann</translation>
    </message>
    <message>
        <source>its rows are out of order</source>
        <translation>Ihre Zeilen sind nicht in der richtigen Reihenfolge</translation>
    </message>
    <message>
        <source>an entry belongs to nothing</source>
        <translation>Ein Eintrag gehört zu nichts</translation>
    </message>
    <message>
        <source>it does not say which library it is</source>
        <translation>Sie nennt nicht, welche Bibliothek sie ist</translation>
    </message>
    <message>
        <source>its kind of library is unknown</source>
        <translation>Ihre Bibliotheksart ist unbekannt</translation>
    </message>
    <message>
        <source>it has too many folders</source>
        <translation>Sie hat zu viele Ordner</translation>
    </message>
    <message>
        <source>it has too many items</source>
        <translation>Sie hat zu viele Objekte</translation>
    </message>
    <message>
        <source>is damaged (%1)</source>
        <translation>Die Datei ist beschädigt (%1)</translation>
    </message>
    <message>
        <source>is damaged (its tables never end)</source>
        <translation>Die Datei ist beschädigt (ihre Tabellen nehmen kein Ende)</translation>
    </message>
    <message>
        <source>cannot be written: the disk is full</source>
        <translation>Das Schreiben ist nicht möglich: Der Datenträger ist voll</translation>
    </message>
    <message>
        <source>cannot be opened</source>
        <translation>Die Datei kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>database disk image is malformed</source>
        <translation>Datenbankabbild fehlerhaft</translation>
    </message>
    <message>
        <source>file is not a database</source>
        <translation>keine Datenbank</translation>
    </message>
    <message>
        <source>string or blob too big</source>
        <translation>ein Wert ist zu groß</translation>
    </message>
    <message>
        <source>database is locked</source>
        <translation>Die Datenbank ist gesperrt</translation>
    </message>
    <message>
        <source>disk I/O error</source>
        <translation>Der Datenträger meldet einen Lese- oder Schreibfehler</translation>
    </message>
    <message>
        <source>is not a filter file; repair it, or move it away</source>
        <translation>Die Datei ist keine Filterdatei; reparieren oder verschieben Sie sie</translation>
    </message>
    <message>
        <source>is damaged; repair it, or move it away</source>
        <translation>Die Datei ist beschädigt; reparieren oder verschieben Sie sie</translation>
    </message>
    <message>
        <source>is damaged; nothing was merged</source>
        <translation>Die Datei ist beschädigt; es wurde nichts übernommen</translation>
    </message>
    <message>
        <source>cannot be removed; left there, it would bring the filters back</source>
        <translation>Die Datei kann nicht gelöscht werden und brächte die Filter zurück</translation>
    </message>
    <message>
        <source>the filters could not be saved</source>
        <translation>Die Filter konnten nicht gespeichert werden</translation>
    </message>
    <message>
        <source>%1; repair it, or move it away</source>
        <translation>%1; reparieren oder verschieben Sie die Datei</translation>
    </message>
    <message>
        <source>cannot be written; the cards are as they were</source>
        <translation>Das Schreiben ist nicht möglich; die Angaben bleiben unverändert</translation>
    </message>
    <message>
        <source>there is no manufacturer %1</source>
        <translation>Es gibt keinen Hersteller %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a safe name for a logo</source>
        <translation>„%1“ ist kein sicherer Name für ein Logo</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a web address</source>
        <translation>„%1“ ist keine Internetadresse</translation>
    </message>
    <message>
        <source>there is too little memory</source>
        <translation>Der Arbeitsspeicher reicht nicht aus</translation>
    </message>
    <message>
        <source>is not a published site; see &quot;velk publish --help&quot;</source>
        <translation>Das ist kein veröffentlichter Bestand; siehe „velk publish --help“</translation>
    </message>
    <message>
        <source>cannot be read; this user needs the right to list and to search it</source>
        <translation>Das Lesen ist nicht möglich; dieser Benutzer braucht das Recht, den Ordner aufzulisten und zu durchsuchen</translation>
    </message>
    <message>
        <source>cannot be listened on; is another program using the port?</source>
        <translation>Auf dieser Adresse kann nicht gelauscht werden; benutzt ein anderes Programm den Port?</translation>
    </message>
    <message>
        <source>%1: cannot be fetched</source>
        <translation>%1: nicht abrufbar</translation>
    </message>
    <message>
        <source>is not a JSON object</source>
        <translation>ist kein JSON-Objekt</translation>
    </message>
    <message>
        <source>%1 is not an object</source>
        <translation>%1 ist kein Objekt</translation>
    </message>
    <message>
        <source>%1 is not a list</source>
        <translation>%1 ist keine Liste</translation>
    </message>
    <message>
        <source>%1 is not a text</source>
        <translation>%1 ist kein Text</translation>
    </message>
    <message>
        <source>%1 is not an integer</source>
        <translation>%1 ist keine ganze Zahl</translation>
    </message>
    <message>
        <source>%1 is neither true nor false</source>
        <translation>%1 ist weder true noch false</translation>
    </message>
    <message>
        <source>%1 is not a time</source>
        <translation>%1 ist keine Zeitangabe</translation>
    </message>
    <message>
        <source>cannot reach %1: %2</source>
        <translation>%1 ist nicht erreichbar: %2</translation>
    </message>
    <message>
        <source>no such host</source>
        <translation>es gibt keinen solchen Rechner</translation>
    </message>
    <message>
        <source>it does not accept connections</source>
        <translation>er nimmt keine Verbindungen an</translation>
    </message>
    <message>
        <source>it does not answer</source>
        <translation>er antwortet nicht</translation>
    </message>
    <message>
        <source>it closed the connection without an answer</source>
        <translation>er hat die Verbindung ohne Antwort geschlossen</translation>
    </message>
    <message>
        <source>it was cancelled, or nothing came any more</source>
        <translation>es wurde abgebrochen, oder es kam nichts mehr</translation>
    </message>
    <message>
        <source>it failed</source>
        <translation>es ist fehlgeschlagen</translation>
    </message>
    <message>
        <source>the certificate is not trusted; VELK_CERTIFICATES names others</source>
        <translation>dem Zertifikat wird nicht vertraut; VELK_CERTIFICATES nennt andere</translation>
    </message>
    <message>
        <source>the certificates that VELK_CERTIFICATES names cannot be read</source>
        <translation>die in VELK_CERTIFICATES genannten Zertifikate können nicht gelesen werden</translation>
    </message>
    <message>
        <source>the disk is full</source>
        <translation>der Datenträger ist voll</translation>
    </message>
    <message>
        <source>what came cannot be written: %1</source>
        <translation>was ankam, kann nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>the list of core libraries cannot be fetched from %1: %2</source>
        <translation>die Liste der Grundbibliotheken kann nicht von %1 geholt werden: %2</translation>
    </message>
    <message>
        <source>what %1 sends as the list of core libraries is none</source>
        <translation>was %1 als Liste der Grundbibliotheken sendet, ist keine</translation>
    </message>
    <message>
        <source>the service cannot be asked about it: %1</source>
        <translation>der Dienst kann nicht danach gefragt werden: %1</translation>
    </message>
    <message>
        <source>the service answers with status %1</source>
        <translation>der Dienst antwortet mit dem Status %1</translation>
    </message>
    <message>
        <source>it cannot be downloaded: %1</source>
        <translation>sie kann nicht heruntergeladen werden: %1</translation>
    </message>
    <message>
        <source>there is a newer version, which was not fetched</source>
        <translation>es gibt eine neuere Fassung, die nicht geholt wurde</translation>
    </message>
    <message>
        <source>what the service sent %1</source>
        <translation>was der Dienst gesandt hat, %1</translation>
    </message>
    <message>
        <source>what the service sent is not what it announced</source>
        <translation>was der Dienst gesandt hat, ist nicht, was er angekündigt hat</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>ihr Ordner kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>it cannot be replaced: %1</source>
        <translation>sie kann nicht ersetzt werden: %1</translation>
    </message>
    <message>
        <source>is not what was written</source>
        <translation>ist nicht, was geschrieben wurde</translation>
    </message>
    <message>
        <source>its files are missing or damaged, and could not be fetched again</source>
        <translation>ihre Dateien fehlen oder sind beschädigt und konnten nicht neu geholt werden</translation>
    </message>
    <message>
        <source>something failed; the error log tells what</source>
        <translation>etwas ist fehlgeschlagen; was, steht im Fehlerprotokoll</translation>
    </message>
    <message>
        <source>%1 is in use: %2</source>
        <translation>%1 ist in Gebrauch: %2</translation>
    </message>
    <message>
        <source>another program changes it</source>
        <translation>ein anderes Programm ändert sie</translation>
    </message>
    <message>
        <source>is not a packed library, or it is damaged</source>
        <translation>ist keine gepackte Bibliothek, oder sie ist beschädigt</translation>
    </message>
    <message>
        <source>is not a packed library: its catalog file is missing or damaged</source>
        <translation>ist keine gepackte Bibliothek: ihre Katalogdatei fehlt oder ist beschädigt</translation>
    </message>
    <message>
        <source>is encrypted</source>
        <translation>ist verschlüsselt</translation>
    </message>
    <message>
        <source>its catalog file could not be unpacked; is it damaged, or the disk full?</source>
        <translation>ihre Katalogdatei konnte nicht entpackt werden; ist sie beschädigt, oder der Datenträger voll?</translation>
    </message>
    <message>
        <source>its textures and other files could not be unpacked; is it damaged, or the disk full?</source>
        <translation>ihre Texturen und übrigen Dateien konnten nicht entpackt werden; sind sie beschädigt, oder der Datenträger voll?</translation>
    </message>
    <message>
        <source>it could not be taken over: %1</source>
        <translation>sie konnte nicht übernommen werden: %1</translation>
    </message>
</context>
<context>
    <name>SearchExplanation</name>
    <message>
        <source>Nothing to search for: there is no term that an entry must have.</source>
        <translation>Es gibt nichts zu suchen: Kein Begriff ist verlangt.</translation>
    </message>
    <message>
        <source>An entry is found when it matches this:</source>
        <translation>Gefunden wird, was diese Bedingung erfüllt:</translation>
    </message>
    <message numerus="yes">
        <source>An entry is found when it matches one of these %Ln alternatives:</source>
        <translation>
            <numerusform>Gefunden wird, was diese Bedingung erfüllt:</numerusform>
            <numerusform>Gefunden wird, was eine dieser %Ln Bedingungen erfüllt:</numerusform>
        </translation>
    </message>
    <message>
        <source>%1. all of: %2</source>
        <translation>%1. alle von: %2</translation>
    </message>
    <message>
        <source>none of: %1</source>
        <translation>keiner von: %1</translation>
    </message>
</context>
<context>
    <name>VelkHost::BrowserWindow</name>
    <message>
        <source>Libraries</source>
        <translation>Bibliotheken</translation>
    </message>
    <message>
        <source>Search the libraries</source>
        <translation>Bibliotheken durchsuchen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>There is too little memory for the search.</source>
        <translation>Der Arbeitsspeicher reicht für die Suche nicht aus.</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Find</source>
        <translation>&amp;Suchen</translation>
    </message>
    <message>
        <source>Back to the &amp;Tree</source>
        <translation>Zurück zum B&amp;aum</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>“%1” %2</source>
        <translation>„%1“ kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>No libraries are installed.

Check for updates to fetch those of the content service, or drop a packed library (.calibz) here.</source>
        <translation>Es sind keine Bibliotheken installiert.

Suchen Sie nach Aktualisierungen, um die Bibliotheken des Inhaltsdienstes zu laden, oder ziehen Sie eine gepackte Bibliothek (.calibz) hierher.</translation>
    </message>
    <message>
        <source>Chosen: %1</source>
        <translation>Ausgewählt: %1</translation>
    </message>
    <message>
        <source>&amp;Show in the Tree</source>
        <translation>Im Baum &amp;zeigen</translation>
    </message>
</context>
<context>
    <name>VelkHost::DetailPane</name>
    <message>
        <source>&amp;Choose</source>
        <translation>Aus&amp;wählen</translation>
    </message>
    <message>
        <source>Place this item in the drawing</source>
        <translation>Dieses Objekt in die Zeichnung übernehmen</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Stichwörter</translation>
    </message>
</context>
<context>
    <name>VelkHost::DropHighlight</name>
    <message>
        <source>Drop to import</source>
        <translation>Zum Importieren loslassen</translation>
    </message>
</context>
<context>
    <name>VelkHost::FilterBox</name>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
</context>
<context>
    <name>VelkHost::FilterEditor</name>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>In &amp;force</source>
        <translation>A&amp;ktiv</translation>
    </message>
    <message>
        <source>&amp;Libraries</source>
        <translation>&amp;Bibliotheken</translation>
    </message>
    <message>
        <source>Edit Filters</source>
        <translation>Filter bearbeiten</translation>
    </message>
    <message>
        <source>Filters</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>The window shows only the libraries of the filter in force</source>
        <translation>Das Fenster zeigt nur die Bibliotheken des aktiven Filters</translation>
    </message>
    <message>
        <source>%1 (not installed)</source>
        <translation>%1 (nicht installiert)</translation>
    </message>
    <message>
        <source>Libraries of the filter</source>
        <translation>Bibliotheken des Filters</translation>
    </message>
    <message>
        <source>Find a library</source>
        <translation>Bibliothek suchen</translation>
    </message>
    <message>
        <source>Fil&amp;ters</source>
        <translation>Fil&amp;ter</translation>
    </message>
    <message>
        <source>New filter</source>
        <translation>Neuer Filter</translation>
    </message>
    <message>
        <source>New filter %1</source>
        <translation>Neuer Filter %1</translation>
    </message>
    <message>
        <source>In force</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>A filter needs a name.</source>
        <translation>Ein Filter braucht einen Namen.</translation>
    </message>
    <message>
        <source>There are two filters “%1”.</source>
        <translation>Es gibt zwei Filter „%1“.</translation>
    </message>
</context>
<context>
    <name>VelkHost::FilterMenu</name>
    <message>
        <source>Fi&amp;lters</source>
        <translation>&amp;Filter</translation>
    </message>
    <message>
        <source>More &amp;Filters</source>
        <translation>Weitere &amp;Filter</translation>
    </message>
    <message>
        <source>&amp;Edit Filters...</source>
        <translation>Filter &amp;bearbeiten…</translation>
    </message>
    <message>
        <source>&amp;Merge Filters from a File...</source>
        <translation>Filter aus einer &amp;Datei übernehmen…</translation>
    </message>
</context>
<context>
    <name>VelkHost::HiddenNote</name>
    <message>
        <source>Show &amp;All Libraries</source>
        <translation>Alle Bibliotheken &amp;zeigen</translation>
    </message>
</context>
<context>
    <name>VelkHost::ImportJob</name>
    <message>
        <source>Copying “%1”</source>
        <translation>„%1“ wird kopiert</translation>
    </message>
    <message>
        <source>The file is not there any more.</source>
        <translation>Die Datei ist nicht mehr vorhanden.</translation>
    </message>
    <message>
        <source>It cannot be read.</source>
        <translation>Sie kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>It is not a packed library, or it is damaged.</source>
        <translation>Sie ist keine gepackte Bibliothek, oder sie ist beschädigt.</translation>
    </message>
    <message>
        <source>Its catalog file is missing or damaged.</source>
        <translation>Ihre Katalogdatei fehlt oder ist beschädigt.</translation>
    </message>
    <message>
        <source>There is too little memory for it.</source>
        <translation>Der Arbeitsspeicher reicht dafür nicht aus.</translation>
    </message>
    <message>
        <source>“%1” was not imported. %2</source>
        <translation>„%1“ wurde nicht importiert. %2</translation>
    </message>
    <message>
        <source>Its name cannot be that of a library.</source>
        <translation>Ihr Name ist als Name einer Bibliothek nicht möglich.</translation>
    </message>
    <message>
        <source>Checking “%1”</source>
        <translation>„%1“ wird geprüft</translation>
    </message>
    <message>
        <source>Its catalog file %1.</source>
        <translation>Ihre Katalogdatei kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>“%1” was imported.</source>
        <translation>„%1“ wurde importiert.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln libraries were imported.</source>
        <translation>
            <numerusform>%Ln Bibliothek wurde importiert.</numerusform>
            <numerusform>%Ln Bibliotheken wurden importiert.</numerusform>
        </translation>
    </message>
    <message>
        <source>The import was cancelled.</source>
        <translation>Der Import wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Nothing was imported.</source>
        <translation>Es wurde nichts importiert.</translation>
    </message>
</context>
<context>
    <name>VelkHost::KindMenu</name>
    <message>
        <source>&amp;Kinds</source>
        <translation>Bibliotheksa&amp;rten</translation>
    </message>
    <message>
        <source>&amp;Core Libraries</source>
        <translation>&amp;Basisbibliotheken</translation>
    </message>
    <message>
        <source>&amp;Bonus Libraries</source>
        <translation>&amp;Zusatzbibliotheken</translation>
    </message>
    <message>
        <source>&amp;Manufacturers&apos; Libraries</source>
        <translation>&amp;Herstellerbibliotheken</translation>
    </message>
    <message>
        <source>&amp;Your Own Libraries</source>
        <translation>&amp;Eigene Bibliotheken</translation>
    </message>
</context>
<context>
    <name>VelkHost::LibraryJobs</name>
    <message>
        <source>Import Libraries</source>
        <translation>Bibliotheken importieren</translation>
    </message>
    <message>
        <source>Libraries (*.calibz *.calib)</source>
        <translation>Bibliotheken (*.calibz *.calib)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Cancelling…</source>
        <translation>Wird abgebrochen…</translation>
    </message>
    <message>
        <source>You already have a library “%1”. Replace it?</source>
        <translation>„%1“ gehört bereits zu Ihren Bibliotheken. Möchten Sie die Bibliothek ersetzen?</translation>
    </message>
    <message>
        <source>You already have these libraries: %1. Replace them?</source>
        <translation>Diese gehören bereits zu Ihren Bibliotheken: %1. Möchten Sie sie ersetzen?</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between names</comment>
        <translation>, </translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>&amp;Skip</source>
        <translation>Über&amp;springen</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>Abbre&amp;chen</translation>
    </message>
    <message>
        <source>Cancel what is running</source>
        <translation>Laufenden Vorgang abbrechen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>&amp;Import…</source>
        <translation>&amp;Importieren…</translation>
    </message>
    <message>
        <source>Add libraries from files (.calibz) to your own</source>
        <translation>Bibliotheken aus Dateien (.calibz) in Ihre eigenen aufnehmen</translation>
    </message>
    <message>
        <source>&amp;Check for Updates</source>
        <translation>Nach Akt&amp;ualisierungen suchen</translation>
    </message>
    <message>
        <source>There is no content service to update from: start the program with --service URL</source>
        <translation>Es ist kein Inhaltsdienst angegeben: Starten Sie das Programm mit --service URL</translation>
    </message>
    <message>
        <source>Bring the installed libraries up to date from %1</source>
        <translation>Die installierten Bibliotheken von %1 aktualisieren</translation>
    </message>
    <message>
        <source>Cancel what is running (Esc)</source>
        <translation>Laufenden Vorgang abbrechen (Esc)</translation>
    </message>
    <message>
        <source>Open the log that tells what went wrong</source>
        <translation>Das Protokoll öffnen, in dem die Fehler stehen</translation>
    </message>
    <message>
        <source>Error log</source>
        <translation>Fehlerprotokoll</translation>
    </message>
    <message>
        <source>Error Lo&amp;g</source>
        <translation>Fehler&amp;protokoll</translation>
    </message>
    <message numerus="yes">
        <source>There were %Ln more problems.</source>
        <translation>
            <numerusform>Es gab noch ein weiteres Problem.</numerusform>
            <numerusform>Es gab noch %Ln weitere Probleme.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::ManufacturerEditor</name>
    <message>
        <source>Wi&amp;thdrawn</source>
        <translation>&amp;Zurückgezogen</translation>
    </message>
    <message>
        <source>Edit Card</source>
        <translation>Herstellerangaben bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Name</source>
        <translation>&amp;Name</translation>
    </message>
    <message>
        <source>&amp;Web address</source>
        <translation>&amp;Internetadresse</translation>
    </message>
    <message>
        <source>&amp;Phone</source>
        <translation>&amp;Telefon</translation>
    </message>
    <message>
        <source>&amp;Fax</source>
        <translation>&amp;Fax</translation>
    </message>
    <message>
        <source>&amp;E-mail</source>
        <translation>&amp;E-Mail</translation>
    </message>
    <message>
        <source>&amp;Logo&apos;s file name</source>
        <translation>Dateiname des &amp;Logos</translation>
    </message>
    <message>
        <source>The file is kept in %1</source>
        <translation>Die Datei liegt in %1</translation>
    </message>
    <message>
        <source>Use the default text</source>
        <translation>Standardtext verwenden</translation>
    </message>
    <message>
        <source>%1: use the default text</source>
        <translation>%1: Standardtext verwenden</translation>
    </message>
</context>
<context>
    <name>VelkHost::ManufacturerMenu</name>
    <message>
        <source>The manufacturers are as they were: %1</source>
        <translation>Die Hersteller bleiben unverändert: %1</translation>
    </message>
    <message>
        <source>The manufacturers cannot be read: %1</source>
        <translation>Die Hersteller können nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>Asking the content service for the manufacturers...</source>
        <translation>Die Hersteller werden vom Inhaltsdienst geladen…</translation>
    </message>
    <message>
        <source>The manufacturers are up to date.</source>
        <translation>Die Hersteller sind auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>The service has nothing newer about the manufacturers.</source>
        <translation>Der Dienst hat nichts Neueres über die Hersteller.</translation>
    </message>
    <message>
        <source>Manufacturers: %L1 new, %L2 changed, %L3 gone.</source>
        <translation>Hersteller: %L1 neu, %L2 geändert, %L3 entfallen.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln logo(s) could not be fetched.</source>
        <translation>
            <numerusform>%Ln Logo konnte nicht abgerufen werden.</numerusform>
            <numerusform>%Ln Logos konnten nicht abgerufen werden.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Manufacturers</source>
        <translation>&amp;Hersteller</translation>
    </message>
    <message>
        <source>&amp;Refresh Manufacturers</source>
        <translation>Hersteller &amp;aktualisieren</translation>
    </message>
    <message>
        <source>No content service is set; start with --service URL</source>
        <translation>Es ist kein Inhaltsdienst angegeben; starten Sie mit --service URL</translation>
    </message>
    <message>
        <source>&amp;Edit Card...</source>
        <translation>An&amp;gaben bearbeiten…</translation>
    </message>
    <message>
        <source>The refresh was stopped. The manufacturers are as they were.</source>
        <translation>Das Aktualisieren wurde abgebrochen. Die Hersteller sind, wie sie waren.</translation>
    </message>
</context>
<context>
    <name>VelkHost::ManufacturerPane</name>
    <message>
        <source>Manufacturer</source>
        <translation>Hersteller</translation>
    </message>
    <message>
        <source>This manufacturer was withdrawn.</source>
        <translation>Dieser Hersteller wurde zurückgezogen.</translation>
    </message>
    <message>
        <source>Edit Ca&amp;rd...</source>
        <translation>An&amp;gaben bearbeiten…</translation>
    </message>
    <message>
        <source>Logo</source>
        <translation>Logo</translation>
    </message>
    <message>
        <source>Phone</source>
        <translation>Telefon</translation>
    </message>
    <message>
        <source>Fax</source>
        <translation>Fax</translation>
    </message>
    <message>
        <source>E-mail</source>
        <translation>E-Mail</translation>
    </message>
    <message>
        <source>Web</source>
        <translation>Internet</translation>
    </message>
</context>
<context>
    <name>VelkHost::SearchPane</name>
    <message>
        <source>There is nothing to search for yet.</source>
        <translation>Es gibt noch nichts zu suchen.</translation>
    </message>
    <message>
        <source>Nothing was found. Fewer or shorter words find more.</source>
        <translation>Nichts gefunden. Weniger oder kürzere Wörter finden mehr.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln hit(s)</source>
        <translation>
            <numerusform>%Ln Treffer</numerusform>
            <numerusform>%Ln Treffer</numerusform>
        </translation>
    </message>
    <message>
        <source>How it was understood</source>
        <translation>So wurde gesucht</translation>
    </message>
    <message>
        <source>Search syntax</source>
        <translation>Suchsyntax</translation>
    </message>
    <message>
        <source>Search results</source>
        <translation>Suchergebnisse</translation>
    </message>
    <message>
        <source>How the search was understood</source>
        <translation>Wie die Suche verstanden wurde</translation>
    </message>
</context>
<context>
    <name>VelkHost::SearchResultModel</name>
    <message>
        <source>Items of this name</source>
        <translation>Objekte mit diesem Namen</translation>
    </message>
    <message>
        <source>Folders of this name</source>
        <translation>Ordner mit diesem Namen</translation>
    </message>
    <message>
        <source>Items that begin with the word</source>
        <translation>Objekte, die mit dem Wort beginnen</translation>
    </message>
    <message>
        <source>Folders that begin with the word</source>
        <translation>Ordner, die mit dem Wort beginnen</translation>
    </message>
    <message>
        <source>Items with the word</source>
        <translation>Objekte mit dem Wort</translation>
    </message>
    <message>
        <source>Folders with the word</source>
        <translation>Ordner mit dem Wort</translation>
    </message>
    <message>
        <source>Items that begin with these letters</source>
        <translation>Objekte, die mit diesen Buchstaben beginnen</translation>
    </message>
    <message>
        <source>Folders that begin with these letters</source>
        <translation>Ordner, die mit diesen Buchstaben beginnen</translation>
    </message>
    <message>
        <source>Items with the word as a keyword</source>
        <translation>Objekte mit dem Wort als Stichwort</translation>
    </message>
    <message>
        <source>Items with a word that begins like this</source>
        <translation>Objekte mit einem Wort, das so beginnt</translation>
    </message>
    <message>
        <source>Folders with a word that begins like this</source>
        <translation>Ordner mit einem Wort, das so beginnt</translation>
    </message>
    <message>
        <source>Items with these letters</source>
        <translation>Objekte mit diesen Buchstaben</translation>
    </message>
    <message>
        <source>Folders with these letters</source>
        <translation>Ordner mit diesen Buchstaben</translation>
    </message>
    <message>
        <source>Items with these letters in a keyword</source>
        <translation>Objekte mit diesen Buchstaben in einem Stichwort</translation>
    </message>
</context>
<context>
    <name>VelkHost::ShownLibraries</name>
    <message>
        <source>The filters are as they were: %1</source>
        <translation>Die Filter bleiben unverändert: %1</translation>
    </message>
    <message>
        <source>The filters cannot be read: %1</source>
        <translation>Die Filter können nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>“%1” was imported; it is hidden by %2.</source>
        <translation>„%1“ wurde importiert, ist aber durch %2 ausgeblendet.</translation>
    </message>
    <message>
        <source>All libraries are hidden by %1.</source>
        <translation>Alle Bibliotheken sind durch %1 ausgeblendet.</translation>
    </message>
    <message>
        <source>Some libraries were not searched: they are hidden by %1.</source>
        <translation>Einige Bibliotheken wurden nicht durchsucht: Sie sind durch %1 ausgeblendet.</translation>
    </message>
    <message>
        <source>the choice of kinds</source>
        <translation>die Auswahl der Bibliotheksarten</translation>
    </message>
    <message>
        <source>the filter “%1” and the choice of kinds</source>
        <translation>den Filter „%1“ und die Auswahl der Bibliotheksarten</translation>
    </message>
    <message>
        <source>the filter “%1”</source>
        <translation>den Filter „%1“</translation>
    </message>
    <message>
        <source>Merge Filters from a File</source>
        <translation>Filter aus einer Datei übernehmen</translation>
    </message>
    <message>
        <source>Filter files (*.json);;All files (*)</source>
        <translation>Filterdateien (*.json);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>No filter was added.</source>
        <translation>Es wurde kein Filter übernommen.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln filter(s) added: %1.</source>
        <translation>
            <numerusform>%Ln Filter wurde übernommen: %1.</numerusform>
            <numerusform>%Ln Filter wurden übernommen: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln filter(s) were here already.</source>
        <translation>
            <numerusform>%Ln Filter war bereits vorhanden.</numerusform>
            <numerusform>%Ln Filter waren bereits vorhanden.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::SyntaxHelp</name>
    <message>
        <source>Search Syntax</source>
        <translation>Suchsyntax</translation>
    </message>
    <message>
        <source>office chair</source>
        <translation>runder Tisch</translation>
    </message>
    <message>
        <source>both words, anywhere and in any order</source>
        <translation>beide Wörter, irgendwo und in beliebiger Reihenfolge</translation>
    </message>
    <message>
        <source>&quot;office chair&quot;</source>
        <translation>&quot;runder Tisch&quot;</translation>
    </message>
    <message>
        <source>the two words as they stand, one after the other</source>
        <translation>die beiden Wörter genau so hintereinander</translation>
    </message>
    <message>
        <source>chair OR table</source>
        <translation>Stuhl OR Tisch</translation>
    </message>
    <message>
        <source>either of the two; &quot;|&quot; does the same</source>
        <translation>eines von beiden; &quot;|&quot; bewirkt dasselbe</translation>
    </message>
    <message>
        <source>chair -red</source>
        <translation>Stuhl -rot</translation>
    </message>
    <message>
        <source>chair, but not red; &quot;NOT red&quot; does the same</source>
        <translation>Stuhl, aber nicht rot; &quot;NOT rot&quot; bewirkt dasselbe</translation>
    </message>
    <message>
        <source>(desk OR table) oak</source>
        <translation>(Regal OR Tisch) Eiche</translation>
    </message>
    <message>
        <source>oak, with desk or with table</source>
        <translation>Eiche, zusammen mit Regal oder mit Tisch</translation>
    </message>
    <message>
        <source>chair -(red OR blue)</source>
        <translation>Stuhl -(rot OR blau)</translation>
    </message>
    <message>
        <source>chair, and neither red nor blue</source>
        <translation>Stuhl, und weder rot noch blau</translation>
    </message>
    <message>
        <source>Upper and lower case make no difference, but operators are capitals. A word is found inside longer words, too.</source>
        <translation>Groß- und Kleinschreibung spielen keine Rolle, nur Operatoren stehen in Großbuchstaben. Ein Wort wird auch innerhalb längerer Wörter gefunden.</translation>
    </message>
</context>
<context>
    <name>VelkHost::UpdateJob</name>
    <message>
        <source>The libraries cannot be updated: %1</source>
        <translation>Die Bibliotheken können nicht aktualisiert werden: %1</translation>
    </message>
    <message>
        <source>The update was cancelled.</source>
        <translation>Die Aktualisierung wurde abgebrochen.</translation>
    </message>
    <message>
        <source>All libraries are up to date.</source>
        <translation>Alle Bibliotheken sind auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>Files that libraries refer to were updated.</source>
        <translation>Von Bibliotheken verwendete Dateien wurden aktualisiert.</translation>
    </message>
    <message>
        <source>Not everything could be updated.</source>
        <translation>Es konnte nicht alles aktualisiert werden.</translation>
    </message>
    <message>
        <source>“%1” was updated.</source>
        <translation>„%1“ wurde aktualisiert.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln libraries were updated.</source>
        <translation>
            <numerusform>%Ln Bibliothek wurde aktualisiert.</numerusform>
            <numerusform>%Ln Bibliotheken wurden aktualisiert.</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” is as it was: %2.</source>
        <translation>„%1“ ist, wie es war: %2.</translation>
    </message>
    <message>
        <source>“%1” is not part of this service.</source>
        <translation>„%1“ gehört nicht zu diesem Dienst.</translation>
    </message>
    <message>
        <source>“%1” was withdrawn.</source>
        <translation>„%1“ wurde zurückgezogen.</translation>
    </message>
    <message>
        <source>“%1” was withdrawn: %2</source>
        <translation>„%1“ wurde zurückgezogen: %2</translation>
    </message>
</context>
</TS>
