<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>Library</name>
    <message>
        <source>%1% %%</source>
        <translation>%1%&#xa0;%%</translation>
    </message>
    <message>
        <source>%1% of %2%</source>
        <translation>%1% sur %2%</translation>
    </message>
    <message>
        <source>Shows the amounts. Click to hide them.</source>
        <translation>Affiche les quantités. Cliquez pour les masquer.</translation>
    </message>
    <message>
        <source>Shows no numbers. Click to show the percentage.</source>
        <translation>N’affiche aucun nombre. Cliquez pour afficher le pourcentage.</translation>
    </message>
    <message>
        <source>Shows the percentage. Click to show the amounts.</source>
        <translation>Affiche le pourcentage. Cliquez pour afficher les quantités.</translation>
    </message>
    <message>
        <source>Downloading %1%</source>
        <translation>Téléchargement de %1%</translation>
    </message>
    <message>
        <source>Checking catalogs</source>
        <translation>Vérification des catalogues</translation>
    </message>
    <message>
        <source>Checking </source>
        <translation>Vérification de </translation>
    </message>
    <message>
        <source>Asking the service about %1%</source>
        <translation>Interrogation du service sur %1%</translation>
    </message>
    <message>
        <source>KB</source>
        <translation>Ko</translation>
    </message>
    <message>
        <source>No filter</source>
        <translation>Aucun filtre</translation>
    </message>
    <message>
        <source>Cabinet</source>
        <translation>Meuble de rangement</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Poteau</translation>
    </message>
    <message>
        <source>Countertop</source>
        <translation>Plan de travail</translation>
    </message>
    <message>
        <source>Curtain wall</source>
        <translation>Mur-rideau</translation>
    </message>
    <message>
        <source>Dimension</source>
        <translation>Cote</translation>
    </message>
    <message>
        <source>Door</source>
        <translation>Porte</translation>
    </message>
    <message>
        <source>Electrical</source>
        <translation>Électricité</translation>
    </message>
    <message>
        <source>Fixture</source>
        <translation>Équipement</translation>
    </message>
    <message>
        <source>Furniture</source>
        <translation>Mobilier</translation>
    </message>
    <message>
        <source>Molding</source>
        <translation>Moulure</translation>
    </message>
    <message>
        <source>Railing</source>
        <translation>Garde-corps</translation>
    </message>
    <message>
        <source>Roof</source>
        <translation>Toit</translation>
    </message>
    <message>
        <source>Stairs</source>
        <translation>Escalier</translation>
    </message>
    <message>
        <source>Wall</source>
        <translation>Mur</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenêtre</translation>
    </message>
    <message>
        <source>Contact the manufacturer for more information about its products.</source>
        <translation>Contactez le fabricant pour en savoir plus sur ses produits.</translation>
    </message>
    <message>
        <source>A preference has an unexpected type: %1%</source>
        <translation>Une préférence a un type inattendu&#xa0;: %1%</translation>
    </message>
    <message>
        <source>The file %1% cannot be written.</source>
        <translation>Impossible d’écrire le fichier %1%.</translation>
    </message>
</context>
<context>
    <name>Reason</name>
    <message>
        <source>is not a path</source>
        <translation>ce n’est pas un chemin</translation>
    </message>
    <message>
        <source>does not exist</source>
        <translation>le fichier n’existe pas</translation>
    </message>
    <message>
        <source>does not exist: %1 is not a folder</source>
        <translation>le fichier n’existe pas : %1 n’est pas un dossier</translation>
    </message>
    <message>
        <source>is a link to something that cannot be found</source>
        <translation>c’est un lien dont la cible est introuvable</translation>
    </message>
    <message>
        <source>is a folder, not a file</source>
        <translation>c’est un dossier, non un fichier</translation>
    </message>
    <message>
        <source>is not a file</source>
        <translation>ce n’est pas un fichier</translation>
    </message>
    <message>
        <source>is larger than %1</source>
        <translation>le fichier dépasse %1</translation>
    </message>
    <message>
        <source>cannot be opened for reading; may you read it, and does no other program write it?</source>
        <translation>impossible d’ouvrir le fichier en lecture&#xa0;; avez-vous le droit de le lire, et aucun autre programme ne l’écrit-il&#xa0;?</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>lecture impossible</translation>
    </message>
    <message>
        <source>cannot be read: %1</source>
        <translation>lecture impossible&#xa0;: %1</translation>
    </message>
    <message>
        <source>cannot be written</source>
        <translation>écriture impossible</translation>
    </message>
    <message>
        <source>cannot be written: %1</source>
        <translation>écriture impossible&#xa0;: %1</translation>
    </message>
    <message>
        <source>cannot be created as a folder: %1</source>
        <translation>impossible de créer le dossier&#xa0;: %1</translation>
    </message>
    <message>
        <source>already exists</source>
        <translation>le fichier existe déjà</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>le fichier est vide</translation>
    </message>
    <message>
        <source>is not a library catalog</source>
        <translation>le fichier n’est pas un catalogue de bibliothèque</translation>
    </message>
    <message>
        <source>is a database, but not a library catalog</source>
        <translation>le fichier est une base de données, mais pas un catalogue de bibliothèque</translation>
    </message>
    <message>
        <source>was made by a newer version of velk (format %1, this one reads %2)</source>
        <translation>le fichier vient d’une version plus récente de velk (format %1, celle-ci lit %2)</translation>
    </message>
    <message>
        <source>is damaged: %1</source>
        <translation>le fichier est endommagé&#xa0;: %1</translation>
    </message>
    <message>
        <source>is damaged: it ends within its header</source>
        <translation>le fichier est endommagé&#xa0;: il s’arrête dans son en-tête</translation>
    </message>
    <message>
        <source>is damaged: it has no format number</source>
        <translation>le fichier est endommagé&#xa0;: il n’a pas de numéro de format</translation>
    </message>
    <message>
        <source>is damaged: it is cut off after %1 of %2 bytes</source>
        <translation>le fichier est endommagé&#xa0;: il est coupé après %1 octets sur %2</translation>
    </message>
    <message>
        <source>is damaged: it holds something other than a catalog&apos;s tables</source>
        <translation>le fichier est endommagé&#xa0;: il contient autre chose que les tables d’un catalogue</translation>
    </message>
    <message>
        <source>is damaged: its table &quot;%1&quot; is not as it should be</source>
        <translation>le fichier est endommagé&#xa0;: sa table «&#xa0;%1&#xa0;» n’est pas conforme</translation>
    </message>
    <message>
        <source>a text is missing</source>
        <translation>il manque un texte</translation>
    </message>
    <message>
        <source>it holds more text than a catalog can</source>
        <translation>il contient plus de texte qu’un catalogue ne peut en avoir</translation>
    </message>
    <message>
        <source>its rows are out of order</source>
        <translation>ses lignes ne sont pas dans l’ordre</translation>
    </message>
    <message>
        <source>an entry belongs to nothing</source>
        <translation>une entrée n’appartient à rien</translation>
    </message>
    <message>
        <source>it does not say which library it is</source>
        <translation>il n’indique pas de quelle bibliothèque il s’agit</translation>
    </message>
    <message>
        <source>its kind of library is unknown</source>
        <translation>son type de bibliothèque est inconnu</translation>
    </message>
    <message>
        <source>it has too many folders</source>
        <translation>il a trop de dossiers</translation>
    </message>
    <message>
        <source>it has too many items</source>
        <translation>il a trop d’objets</translation>
    </message>
    <message>
        <source>is damaged (%1)</source>
        <translation>le fichier est endommagé (%1)</translation>
    </message>
    <message>
        <source>is damaged (its tables never end)</source>
        <translation>le fichier est endommagé (ses tables n’ont pas de fin)</translation>
    </message>
    <message>
        <source>cannot be written: the disk is full</source>
        <translation>écriture impossible&#xa0;: le disque est plein</translation>
    </message>
    <message>
        <source>cannot be opened</source>
        <translation>impossible d’ouvrir le fichier</translation>
    </message>
    <message>
        <source>database disk image is malformed</source>
        <translation>image de base de données mal formée</translation>
    </message>
    <message>
        <source>file is not a database</source>
        <translation>ce n’est pas une base de données</translation>
    </message>
    <message>
        <source>string or blob too big</source>
        <translation>une valeur est trop grande</translation>
    </message>
    <message>
        <source>database is locked</source>
        <translation>la base de données est verrouillée</translation>
    </message>
    <message>
        <source>disk I/O error</source>
        <translation>erreur de lecture ou d’écriture du disque</translation>
    </message>
    <message>
        <source>is not a filter file; repair it, or move it away</source>
        <translation>ce n’est pas un fichier de filtres&#xa0;; réparez-le ou déplacez-le</translation>
    </message>
    <message>
        <source>is damaged; repair it, or move it away</source>
        <translation>le fichier est endommagé&#xa0;; réparez-le ou déplacez-le</translation>
    </message>
    <message>
        <source>is damaged; nothing was merged</source>
        <translation>le fichier est endommagé&#xa0;; rien n’a été fusionné</translation>
    </message>
    <message>
        <source>cannot be removed; left there, it would bring the filters back</source>
        <translation>impossible de supprimer le fichier, qui ferait revenir les filtres</translation>
    </message>
    <message>
        <source>the filters could not be saved</source>
        <translation>impossible d’enregistrer les filtres</translation>
    </message>
    <message>
        <source>%1; repair it, or move it away</source>
        <translation>%1&#xa0;; réparez le fichier ou déplacez-le</translation>
    </message>
    <message>
        <source>cannot be written; the cards are as they were</source>
        <translation>écriture impossible&#xa0;; les fiches restent inchangées</translation>
    </message>
    <message>
        <source>there is no manufacturer %1</source>
        <translation>il n’y a pas de fabricant %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a safe name for a logo</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas un nom sûr pour un logo</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a web address</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas une adresse web</translation>
    </message>
    <message>
        <source>there is too little memory</source>
        <translation>la mémoire est insuffisante</translation>
    </message>
    <message>
        <source>is not a published site; see &quot;velk publish --help&quot;</source>
        <translation>ce n’est pas un site publié&#xa0;; voir «&#xa0;velk publish --help&#xa0;»</translation>
    </message>
    <message>
        <source>cannot be read; this user needs the right to list and to search it</source>
        <translation>lecture impossible&#xa0;; cet utilisateur doit avoir le droit de lister et de parcourir ce dossier</translation>
    </message>
    <message>
        <source>cannot be listened on; is another program using the port?</source>
        <translation>impossible d’écouter à cette adresse&#xa0;; un autre programme utilise-t-il le port&#xa0;?</translation>
    </message>
    <message>
        <source>%1: cannot be fetched</source>
        <translation>%1&#xa0;: injoignable</translation>
    </message>
    <message>
        <source>is not a JSON object</source>
        <translation>le fichier n’est pas un objet JSON</translation>
    </message>
    <message>
        <source>%1 is not an object</source>
        <translation>%1 n’est pas un objet</translation>
    </message>
    <message>
        <source>%1 is not a list</source>
        <translation>%1 n’est pas une liste</translation>
    </message>
    <message>
        <source>%1 is not a text</source>
        <translation>%1 n’est pas un texte</translation>
    </message>
    <message>
        <source>%1 is not an integer</source>
        <translation>%1 n’est pas un nombre entier</translation>
    </message>
    <message>
        <source>%1 is neither true nor false</source>
        <translation>%1 n’est ni true ni false</translation>
    </message>
    <message>
        <source>%1 is not a time</source>
        <translation>%1 n’est pas une heure</translation>
    </message>
    <message>
        <source>cannot reach %1: %2</source>
        <translation>%1 est injoignable : %2</translation>
    </message>
    <message>
        <source>no such host</source>
        <translation>cet hôte n’existe pas</translation>
    </message>
    <message>
        <source>it does not accept connections</source>
        <translation>il n’accepte pas de connexions</translation>
    </message>
    <message>
        <source>it does not answer</source>
        <translation>il ne répond pas</translation>
    </message>
    <message>
        <source>it closed the connection without an answer</source>
        <translation>il a fermé la connexion sans répondre</translation>
    </message>
    <message>
        <source>it was cancelled, or nothing came any more</source>
        <translation>l’opération a été annulée, ou plus rien n’est arrivé</translation>
    </message>
    <message>
        <source>it failed</source>
        <translation>l’opération a échoué</translation>
    </message>
    <message>
        <source>the certificate is not trusted; VELK_CERTIFICATES names others</source>
        <translation>le certificat n’est pas approuvé ; VELK_CERTIFICATES en indique d’autres</translation>
    </message>
    <message>
        <source>the certificates that VELK_CERTIFICATES names cannot be read</source>
        <translation>les certificats indiqués par VELK_CERTIFICATES sont illisibles</translation>
    </message>
    <message>
        <source>the disk is full</source>
        <translation>le disque est plein</translation>
    </message>
    <message>
        <source>what came cannot be written: %1</source>
        <translation>ce qui est arrivé ne peut pas être écrit : %1</translation>
    </message>
    <message>
        <source>the list of core libraries cannot be fetched from %1: %2</source>
        <translation>la liste des bibliothèques de base ne peut pas être obtenue de %1 : %2</translation>
    </message>
    <message>
        <source>what %1 sends as the list of core libraries is none</source>
        <translation>ce que %1 envoie comme liste des bibliothèques de base n’en est pas une</translation>
    </message>
    <message>
        <source>the service cannot be asked about it: %1</source>
        <translation>le service ne peut pas être interrogé à son sujet : %1</translation>
    </message>
    <message>
        <source>the service answers with status %1</source>
        <translation>le service répond avec l’état %1</translation>
    </message>
    <message>
        <source>it cannot be downloaded: %1</source>
        <translation>elle ne peut pas être téléchargée : %1</translation>
    </message>
    <message>
        <source>there is a newer version, which was not fetched</source>
        <translation>il existe une version plus récente, qui n’a pas été téléchargée</translation>
    </message>
    <message>
        <source>what the service sent %1</source>
        <translation>ce que le service a envoyé %1</translation>
    </message>
    <message>
        <source>what the service sent is not what it announced</source>
        <translation>ce que le service a envoyé n’est pas ce qu’il avait annoncé</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>son dossier ne peut pas être créé</translation>
    </message>
    <message>
        <source>it cannot be replaced: %1</source>
        <translation>elle ne peut pas être remplacée&#xa0;: %1</translation>
    </message>
    <message>
        <source>is not what was written</source>
        <translation>n’est pas ce qui a été écrit</translation>
    </message>
    <message>
        <source>its files are missing or damaged, and could not be fetched again</source>
        <translation>ses fichiers manquent ou sont endommagés, et n’ont pas pu être téléchargés à nouveau</translation>
    </message>
    <message>
        <source>something failed; the error log tells what</source>
        <translation>une opération a échoué ; le journal des erreurs dit laquelle</translation>
    </message>
    <message>
        <source>%1 is in use: %2</source>
        <translation>%1 est en cours d’utilisation : %2</translation>
    </message>
    <message>
        <source>another program changes it</source>
        <translation>un autre programme le modifie</translation>
    </message>
    <message>
        <source>is not a packed library, or it is damaged</source>
        <translation>n’est pas une bibliothèque compressée, ou elle est endommagée</translation>
    </message>
    <message>
        <source>is not a packed library: its catalog file is missing or damaged</source>
        <translation>n’est pas une bibliothèque compressée : son fichier de catalogue manque ou est endommagé</translation>
    </message>
    <message>
        <source>is encrypted</source>
        <translation>est chiffré</translation>
    </message>
    <message>
        <source>its catalog file could not be unpacked; is it damaged, or the disk full?</source>
        <translation>son fichier de catalogue n’a pas pu être extrait ; est-il endommagé, ou le disque est-il plein ?</translation>
    </message>
    <message>
        <source>its textures and other files could not be unpacked; is it damaged, or the disk full?</source>
        <translation>ses textures et autres fichiers n’ont pas pu être extraits ; sont-ils endommagés, ou le disque est-il plein ?</translation>
    </message>
    <message>
        <source>it could not be taken over: %1</source>
        <translation>elle n’a pas pu être installée : %1</translation>
    </message>
</context>
<context>
    <name>SearchExplanation</name>
    <message>
        <source>Nothing to search for: there is no term that an entry must have.</source>
        <translation>Rien à rechercher&#xa0;: aucun terme n’est exigé.</translation>
    </message>
    <message>
        <source>An entry is found when it matches this:</source>
        <translation>Est trouvé ce qui remplit cette condition&#xa0;:</translation>
    </message>
    <message numerus="yes">
        <source>An entry is found when it matches one of these %Ln alternatives:</source>
        <translation>
            <numerusform>Est trouvé ce qui remplit cette condition&#xa0;:</numerusform>
            <numerusform>Est trouvé ce qui remplit l’une de ces %Ln conditions&#xa0;:</numerusform>
        </translation>
    </message>
    <message>
        <source>%1. all of: %2</source>
        <translation>%1. tous ces termes&#xa0;: %2</translation>
    </message>
    <message>
        <source>none of: %1</source>
        <translation>aucun de ceux-ci&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>VelkHost::BrowserWindow</name>
    <message>
        <source>Libraries</source>
        <translation>Bibliothèques</translation>
    </message>
    <message>
        <source>Search the libraries</source>
        <translation>Rechercher dans les bibliothèques</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Recherche</translation>
    </message>
    <message>
        <source>There is too little memory for the search.</source>
        <translation>La mémoire est insuffisante pour la recherche.</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>É&amp;dition</translation>
    </message>
    <message>
        <source>&amp;Find</source>
        <translation>&amp;Rechercher</translation>
    </message>
    <message>
        <source>Back to the &amp;Tree</source>
        <translation>Revenir à l’&amp;arborescence</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <source>“%1” %2</source>
        <translation>Impossible de lire «&#xa0;%1&#xa0;»&#xa0;: %2</translation>
    </message>
    <message>
        <source>No libraries are installed.

Check for updates to fetch those of the content service, or drop a packed library (.calibz) here.</source>
        <translation>Aucune bibliothèque n’est installée.

Recherchez les mises à jour pour obtenir celles du service de contenu, ou déposez ici une bibliothèque compressée (.calibz).</translation>
    </message>
    <message>
        <source>Chosen: %1</source>
        <translation>Élément choisi&#xa0;: %1</translation>
    </message>
    <message>
        <source>&amp;Show in the Tree</source>
        <translation>A&amp;fficher dans l’arborescence</translation>
    </message>
</context>
<context>
    <name>VelkHost::DetailPane</name>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Choisir</translation>
    </message>
    <message>
        <source>Place this item in the drawing</source>
        <translation>Placer cet objet dans le dessin</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Mots-clés</translation>
    </message>
</context>
<context>
    <name>VelkHost::DropHighlight</name>
    <message>
        <source>Drop to import</source>
        <translation>Déposez pour importer</translation>
    </message>
</context>
<context>
    <name>VelkHost::FilterBox</name>
    <message>
        <source>Filter</source>
        <translation>Filtre</translation>
    </message>
</context>
<context>
    <name>VelkHost::FilterEditor</name>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Ajouter</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Renommer</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>In &amp;force</source>
        <translation>Ac&amp;tif</translation>
    </message>
    <message>
        <source>&amp;Libraries</source>
        <translation>&amp;Bibliothèques</translation>
    </message>
    <message>
        <source>Edit Filters</source>
        <translation>Modifier les filtres</translation>
    </message>
    <message>
        <source>Filters</source>
        <translation>Filtres</translation>
    </message>
    <message>
        <source>The window shows only the libraries of the filter in force</source>
        <translation>La fenêtre n’affiche que les bibliothèques du filtre actif</translation>
    </message>
    <message>
        <source>%1 (not installed)</source>
        <translation>%1 (non installée)</translation>
    </message>
    <message>
        <source>Libraries of the filter</source>
        <translation>Bibliothèques du filtre</translation>
    </message>
    <message>
        <source>Find a library</source>
        <translation>Rechercher une bibliothèque</translation>
    </message>
    <message>
        <source>Fil&amp;ters</source>
        <translation>&amp;Filtres</translation>
    </message>
    <message>
        <source>New filter</source>
        <translation>Nouveau filtre</translation>
    </message>
    <message>
        <source>New filter %1</source>
        <translation>Nouveau filtre %1</translation>
    </message>
    <message>
        <source>In force</source>
        <translation>Actif</translation>
    </message>
    <message>
        <source>A filter needs a name.</source>
        <translation>Un filtre doit avoir un nom.</translation>
    </message>
    <message>
        <source>There are two filters “%1”.</source>
        <translation>Il y a deux filtres «&#xa0;%1&#xa0;».</translation>
    </message>
</context>
<context>
    <name>VelkHost::FilterMenu</name>
    <message>
        <source>Fi&amp;lters</source>
        <translation>Fi&amp;ltres</translation>
    </message>
    <message>
        <source>More &amp;Filters</source>
        <translation>Autres &amp;filtres</translation>
    </message>
    <message>
        <source>&amp;Edit Filters...</source>
        <translation>Modifi&amp;er les filtres…</translation>
    </message>
    <message>
        <source>&amp;Merge Filters from a File...</source>
        <translation>F&amp;usionner les filtres d’un fichier…</translation>
    </message>
</context>
<context>
    <name>VelkHost::HiddenNote</name>
    <message>
        <source>Show &amp;All Libraries</source>
        <translation>Afficher &amp;toutes les bibliothèques</translation>
    </message>
</context>
<context>
    <name>VelkHost::ImportJob</name>
    <message>
        <source>Copying “%1”</source>
        <translation>Copie de «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>The file is not there any more.</source>
        <translation>Le fichier n’existe plus.</translation>
    </message>
    <message>
        <source>It cannot be read.</source>
        <translation>Il est impossible de le lire.</translation>
    </message>
    <message>
        <source>It is not a packed library, or it is damaged.</source>
        <translation>Ce n’est pas une bibliothèque compressée, ou elle est endommagée.</translation>
    </message>
    <message>
        <source>Its catalog file is missing or damaged.</source>
        <translation>Son fichier de catalogue manque ou est endommagé.</translation>
    </message>
    <message>
        <source>There is too little memory for it.</source>
        <translation>La mémoire est insuffisante.</translation>
    </message>
    <message>
        <source>“%1” was not imported. %2</source>
        <translation>«&#xa0;%1&#xa0;» n’a pas été importé. %2</translation>
    </message>
    <message>
        <source>Its name cannot be that of a library.</source>
        <translation>Son nom ne peut pas être celui d’une bibliothèque.</translation>
    </message>
    <message>
        <source>Checking “%1”</source>
        <translation>Vérification de «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>Its catalog file %1.</source>
        <translation>Impossible de lire son fichier de catalogue&#xa0;: %1</translation>
    </message>
    <message>
        <source>“%1” was imported.</source>
        <translation>La bibliothèque «&#xa0;%1&#xa0;» a été importée.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln libraries were imported.</source>
        <translation>
            <numerusform>%Ln bibliothèque a été importée.</numerusform>
            <numerusform>%Ln bibliothèques ont été importées.</numerusform>
        </translation>
    </message>
    <message>
        <source>The import was cancelled.</source>
        <translation>L’importation a été annulée.</translation>
    </message>
    <message>
        <source>Nothing was imported.</source>
        <translation>Rien n’a été importé.</translation>
    </message>
</context>
<context>
    <name>VelkHost::KindMenu</name>
    <message>
        <source>&amp;Kinds</source>
        <translation>&amp;Types de bibliothèques</translation>
    </message>
    <message>
        <source>&amp;Core Libraries</source>
        <translation>Bibliothèques de &amp;base</translation>
    </message>
    <message>
        <source>&amp;Bonus Libraries</source>
        <translation>Bibliothèques co&amp;mplémentaires</translation>
    </message>
    <message>
        <source>&amp;Manufacturers&apos; Libraries</source>
        <translation>Bibliothèques des &amp;fabricants</translation>
    </message>
    <message>
        <source>&amp;Your Own Libraries</source>
        <translation>&amp;Vos propres bibliothèques</translation>
    </message>
</context>
<context>
    <name>VelkHost::LibraryJobs</name>
    <message>
        <source>Import Libraries</source>
        <translation>Importer des bibliothèques</translation>
    </message>
    <message>
        <source>Libraries (*.calibz *.calib)</source>
        <translation>Bibliothèques (*.calibz *.calib)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Cancelling…</source>
        <translation>Annulation en cours…</translation>
    </message>
    <message>
        <source>You already have a library “%1”. Replace it?</source>
        <translation>«&#xa0;%1&#xa0;» fait déjà partie de vos bibliothèques. Voulez-vous la remplacer&#xa0;?</translation>
    </message>
    <message>
        <source>You already have these libraries: %1. Replace them?</source>
        <translation>Celles-ci font déjà partie de vos bibliothèques&#xa0;: %1. Voulez-vous les remplacer&#xa0;?</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between names</comment>
        <translation>, </translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Remplacer</translation>
    </message>
    <message>
        <source>&amp;Skip</source>
        <translation>&amp;Ignorer</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>A&amp;nnuler</translation>
    </message>
    <message>
        <source>Cancel what is running</source>
        <translation>Annuler l’opération en cours</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>&amp;Import…</source>
        <translation>&amp;Importer…</translation>
    </message>
    <message>
        <source>Add libraries from files (.calibz) to your own</source>
        <translation>Ajouter à vos bibliothèques celles de fichiers (.calibz)</translation>
    </message>
    <message>
        <source>&amp;Check for Updates</source>
        <translation>&amp;Rechercher les mises à jour</translation>
    </message>
    <message>
        <source>There is no content service to update from: start the program with --service URL</source>
        <translation>Aucun service de contenu n’est indiqué&#xa0;: démarrez le programme avec --service URL</translation>
    </message>
    <message>
        <source>Bring the installed libraries up to date from %1</source>
        <translation>Mettre à jour les bibliothèques installées depuis %1</translation>
    </message>
    <message>
        <source>Cancel what is running (Esc)</source>
        <translation>Annuler l’opération en cours (Échap)</translation>
    </message>
    <message>
        <source>Open the log that tells what went wrong</source>
        <translation>Ouvrir le journal qui décrit les erreurs</translation>
    </message>
    <message>
        <source>Error log</source>
        <translation>Journal des erreurs</translation>
    </message>
    <message>
        <source>Error Lo&amp;g</source>
        <translation>&amp;Journal des erreurs</translation>
    </message>
    <message numerus="yes">
        <source>There were %Ln more problems.</source>
        <translation>
            <numerusform>Il y a eu encore %Ln autre problème.</numerusform>
            <numerusform>Il y a eu encore %Ln autres problèmes.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::ManufacturerEditor</name>
    <message>
        <source>Wi&amp;thdrawn</source>
        <translation>Ret&amp;iré</translation>
    </message>
    <message>
        <source>Edit Card</source>
        <translation>Modifier la fiche du fabricant</translation>
    </message>
    <message>
        <source>&amp;Name</source>
        <translation>&amp;Nom</translation>
    </message>
    <message>
        <source>&amp;Web address</source>
        <translation>Adresse &amp;web</translation>
    </message>
    <message>
        <source>&amp;Phone</source>
        <translation>&amp;Téléphone</translation>
    </message>
    <message>
        <source>&amp;Fax</source>
        <translation>&amp;Fax</translation>
    </message>
    <message>
        <source>&amp;E-mail</source>
        <translation>&amp;E-mail</translation>
    </message>
    <message>
        <source>&amp;Logo&apos;s file name</source>
        <translation>Fichier du &amp;logo</translation>
    </message>
    <message>
        <source>The file is kept in %1</source>
        <translation>Le fichier se trouve dans %1</translation>
    </message>
    <message>
        <source>Use the default text</source>
        <translation>Utiliser le texte par défaut</translation>
    </message>
    <message>
        <source>%1: use the default text</source>
        <translation>%1&#xa0;: utiliser le texte par défaut</translation>
    </message>
</context>
<context>
    <name>VelkHost::ManufacturerMenu</name>
    <message>
        <source>The manufacturers are as they were: %1</source>
        <translation>Les fabricants restent inchangés&#xa0;: %1</translation>
    </message>
    <message>
        <source>The manufacturers cannot be read: %1</source>
        <translation>Impossible de lire les fabricants&#xa0;: %1</translation>
    </message>
    <message>
        <source>Asking the content service for the manufacturers...</source>
        <translation>Demande des fabricants au service de contenu…</translation>
    </message>
    <message>
        <source>The manufacturers are up to date.</source>
        <translation>Les fabricants sont à jour.</translation>
    </message>
    <message>
        <source>The service has nothing newer about the manufacturers.</source>
        <translation>Le service n’a rien de plus récent sur les fabricants.</translation>
    </message>
    <message>
        <source>Manufacturers: %L1 new, %L2 changed, %L3 gone.</source>
        <translation>Fabricants&#xa0;: %L1 nouveaux, %L2 modifiés, %L3 supprimés.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln logo(s) could not be fetched.</source>
        <translation>
            <numerusform>%Ln logo n’a pas pu être récupéré.</numerusform>
            <numerusform>%Ln logos n’ont pas pu être récupérés.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Manufacturers</source>
        <translation>Fa&amp;bricants</translation>
    </message>
    <message>
        <source>&amp;Refresh Manufacturers</source>
        <translation>&amp;Actualiser les fabricants</translation>
    </message>
    <message>
        <source>No content service is set; start with --service URL</source>
        <translation>Aucun service de contenu n’est indiqué&#xa0;; démarrez avec --service URL</translation>
    </message>
    <message>
        <source>&amp;Edit Card...</source>
        <translation>&amp;Modifier la fiche…</translation>
    </message>
    <message>
        <source>The refresh was stopped. The manufacturers are as they were.</source>
        <translation>L’actualisation a été interrompue. Les fabricants sont inchangés.</translation>
    </message>
</context>
<context>
    <name>VelkHost::ManufacturerPane</name>
    <message>
        <source>Manufacturer</source>
        <translation>Fabricant</translation>
    </message>
    <message>
        <source>This manufacturer was withdrawn.</source>
        <translation>Ce fabricant a été retiré.</translation>
    </message>
    <message>
        <source>Edit Ca&amp;rd...</source>
        <translation>&amp;Modifier la fiche…</translation>
    </message>
    <message>
        <source>Logo</source>
        <translation>Logo</translation>
    </message>
    <message>
        <source>Phone</source>
        <translation>Téléphone</translation>
    </message>
    <message>
        <source>Fax</source>
        <translation>Fax</translation>
    </message>
    <message>
        <source>E-mail</source>
        <translation>E-mail</translation>
    </message>
    <message>
        <source>Web</source>
        <translation>Site web</translation>
    </message>
</context>
<context>
    <name>VelkHost::SearchPane</name>
    <message>
        <source>There is nothing to search for yet.</source>
        <translation>Il n’y a encore rien à rechercher.</translation>
    </message>
    <message>
        <source>Nothing was found. Fewer or shorter words find more.</source>
        <translation>Aucun résultat. Des mots moins nombreux ou plus courts en trouvent davantage.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln hit(s)</source>
        <translation>
            <numerusform>%Ln résultat</numerusform>
            <numerusform>%Ln résultats</numerusform>
        </translation>
    </message>
    <message>
        <source>How it was understood</source>
        <translation>Interprétation</translation>
    </message>
    <message>
        <source>Search syntax</source>
        <translation>Syntaxe de recherche</translation>
    </message>
    <message>
        <source>Search results</source>
        <translation>Résultats de la recherche</translation>
    </message>
    <message>
        <source>How the search was understood</source>
        <translation>Interprétation de la recherche</translation>
    </message>
</context>
<context>
    <name>VelkHost::SearchResultModel</name>
    <message>
        <source>Items of this name</source>
        <translation>Objets portant ce nom</translation>
    </message>
    <message>
        <source>Folders of this name</source>
        <translation>Dossiers portant ce nom</translation>
    </message>
    <message>
        <source>Items that begin with the word</source>
        <translation>Objets commençant par le mot</translation>
    </message>
    <message>
        <source>Folders that begin with the word</source>
        <translation>Dossiers commençant par le mot</translation>
    </message>
    <message>
        <source>Items with the word</source>
        <translation>Objets contenant le mot</translation>
    </message>
    <message>
        <source>Folders with the word</source>
        <translation>Dossiers contenant le mot</translation>
    </message>
    <message>
        <source>Items that begin with these letters</source>
        <translation>Objets commençant par ces lettres</translation>
    </message>
    <message>
        <source>Folders that begin with these letters</source>
        <translation>Dossiers commençant par ces lettres</translation>
    </message>
    <message>
        <source>Items with the word as a keyword</source>
        <translation>Objets ayant le mot pour mot-clé</translation>
    </message>
    <message>
        <source>Items with a word that begins like this</source>
        <translation>Objets dont un mot commence ainsi</translation>
    </message>
    <message>
        <source>Folders with a word that begins like this</source>
        <translation>Dossiers dont un mot commence ainsi</translation>
    </message>
    <message>
        <source>Items with these letters</source>
        <translation>Objets contenant ces lettres</translation>
    </message>
    <message>
        <source>Folders with these letters</source>
        <translation>Dossiers contenant ces lettres</translation>
    </message>
    <message>
        <source>Items with these letters in a keyword</source>
        <translation>Objets dont un mot-clé contient ces lettres</translation>
    </message>
</context>
<context>
    <name>VelkHost::ShownLibraries</name>
    <message>
        <source>The filters are as they were: %1</source>
        <translation>Les filtres restent inchangés&#xa0;: %1</translation>
    </message>
    <message>
        <source>The filters cannot be read: %1</source>
        <translation>Impossible de lire les filtres&#xa0;: %1</translation>
    </message>
    <message>
        <source>“%1” was imported; it is hidden by %2.</source>
        <translation>«&#xa0;%1&#xa0;» a été importée, mais elle est masquée par %2.</translation>
    </message>
    <message>
        <source>All libraries are hidden by %1.</source>
        <translation>Toutes les bibliothèques sont masquées par %1.</translation>
    </message>
    <message>
        <source>Some libraries were not searched: they are hidden by %1.</source>
        <translation>La recherche n’a pas porté sur certaines bibliothèques&#xa0;: elles sont masquées par %1.</translation>
    </message>
    <message>
        <source>the choice of kinds</source>
        <translation>le choix des types de bibliothèques</translation>
    </message>
    <message>
        <source>the filter “%1” and the choice of kinds</source>
        <translation>le filtre «&#xa0;%1&#xa0;» et le choix des types de bibliothèques</translation>
    </message>
    <message>
        <source>the filter “%1”</source>
        <translation>le filtre «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>Merge Filters from a File</source>
        <translation>Fusionner les filtres d’un fichier</translation>
    </message>
    <message>
        <source>Filter files (*.json);;All files (*)</source>
        <translation>Fichiers de filtres (*.json);;Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>No filter was added.</source>
        <translation>Aucun filtre n’a été ajouté.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln filter(s) added: %1.</source>
        <translation>
            <numerusform>%Ln filtre a été ajouté&#xa0;: %1.</numerusform>
            <numerusform>%Ln filtres ont été ajoutés&#xa0;: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln filter(s) were here already.</source>
        <translation>
            <numerusform>%Ln filtre existait déjà.</numerusform>
            <numerusform>%Ln filtres existaient déjà.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::SyntaxHelp</name>
    <message>
        <source>Search Syntax</source>
        <translation>Syntaxe de recherche</translation>
    </message>
    <message>
        <source>office chair</source>
        <translation>table ronde</translation>
    </message>
    <message>
        <source>both words, anywhere and in any order</source>
        <translation>les deux mots, où qu’ils soient et dans n’importe quel ordre</translation>
    </message>
    <message>
        <source>&quot;office chair&quot;</source>
        <translation>&quot;table ronde&quot;</translation>
    </message>
    <message>
        <source>the two words as they stand, one after the other</source>
        <translation>les deux mots tels quels, l’un après l’autre</translation>
    </message>
    <message>
        <source>chair OR table</source>
        <translation>chaise OR table</translation>
    </message>
    <message>
        <source>either of the two; &quot;|&quot; does the same</source>
        <translation>l’un ou l’autre&#xa0;; &quot;|&quot; a le même effet</translation>
    </message>
    <message>
        <source>chair -red</source>
        <translation>chaise -rouge</translation>
    </message>
    <message>
        <source>chair, but not red; &quot;NOT red&quot; does the same</source>
        <translation>chaise, mais pas rouge&#xa0;; &quot;NOT rouge&quot; a le même effet</translation>
    </message>
    <message>
        <source>(desk OR table) oak</source>
        <translation>(bureau OR table) chêne</translation>
    </message>
    <message>
        <source>oak, with desk or with table</source>
        <translation>chêne, avec bureau ou avec table</translation>
    </message>
    <message>
        <source>chair -(red OR blue)</source>
        <translation>chaise -(rouge OR bleu)</translation>
    </message>
    <message>
        <source>chair, and neither red nor blue</source>
        <translation>chaise, et ni rouge ni bleu</translation>
    </message>
    <message>
        <source>Upper and lower case make no difference, but operators are capitals. A word is found inside longer words, too.</source>
        <translation>Majuscules et minuscules sont équivalentes, mais les opérateurs s’écrivent en majuscules. Un mot est aussi trouvé à l’intérieur de mots plus longs.</translation>
    </message>
</context>
<context>
    <name>VelkHost::UpdateJob</name>
    <message>
        <source>The libraries cannot be updated: %1</source>
        <translation>Impossible de mettre à jour les bibliothèques&#xa0;: %1</translation>
    </message>
    <message>
        <source>The update was cancelled.</source>
        <translation>La mise à jour a été annulée.</translation>
    </message>
    <message>
        <source>All libraries are up to date.</source>
        <translation>Toutes les bibliothèques sont à jour.</translation>
    </message>
    <message>
        <source>Files that libraries refer to were updated.</source>
        <translation>Des fichiers utilisés par les bibliothèques ont été mis à jour.</translation>
    </message>
    <message>
        <source>Not everything could be updated.</source>
        <translation>Tout n’a pas pu être mis à jour.</translation>
    </message>
    <message>
        <source>“%1” was updated.</source>
        <translation>La bibliothèque «&#xa0;%1&#xa0;» a été mise à jour.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln libraries were updated.</source>
        <translation>
            <numerusform>%Ln bibliothèque a été mise à jour.</numerusform>
            <numerusform>%Ln bibliothèques ont été mises à jour.</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” is as it was: %2.</source>
        <translation>« %1 » reste en l’état : %2.</translation>
    </message>
    <message>
        <source>“%1” is not part of this service.</source>
        <translation>« %1 » ne fait pas partie de ce service.</translation>
    </message>
    <message>
        <source>“%1” was withdrawn.</source>
        <translation>« %1 » a été retiré.</translation>
    </message>
    <message>
        <source>“%1” was withdrawn: %2</source>
        <translation>« %1 » a été retiré : %2</translation>
    </message>
</context>
</TS>
