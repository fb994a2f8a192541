-- Lookup tables and the people, places and things that the generated rows refer to.

INSERT INTO HOLZART (ID, HA, NAME, LNH, DISABLE) VALUES
  (1, N'FI', N'Fichte', N'N', 0),
  (2, N'KI', N'Kiefer', N'N', 0),
  (3, N'TA', N'Weißtanne', N'N', 0),
  (4, N'DGL', N'Douglasie', N'N', NULL),
  (5, N'LÄ', N'Lärche', N'N', 0),
  (6, N'BU', N'Rotbuche', N'L', 0),
  (7, N'EI', N'Eiche', N'L', NULL),
  (8, N'ES', N'Esche', N'L', 0),
  (9, N'AH', N'Bergahorn', N'L', 0),
  (10, N'BI', N'Birke', N'L', 0),
  (11, N'UL', N'Ulme', N'L', 1);

INSERT INTO HOLZSORTE (ID, HS, NAME, VERKAUFSFAHIG) VALUES
  (1, N'L', N'Stammholz lang', 1),
  (2, N'LAS', N'Stammholz-Abschnitte', 1),
  (3, N'PAL', N'Palettenholz', 1),
  (4, N'IS', N'Industrieholz', 1),
  (5, N'BRH', N'Brennholz', 1),
  (6, N'EH', N'Energieholz (Hackgut)', 1),
  (7, N'XH', N'X-Holz, verbleibt im Bestand', 0);

INSERT INTO GUETEKLASSE (ID, GKL, NAME) VALUES
  (1, N'A', N'hervorragend'),
  (2, N'B', N'gut bis durchschnittlich'),
  (3, N'C', N'unterdurchschnittlich'),
  (4, N'D', N'sägefähig, sonst ohne Ansprüche');

INSERT INTO STKL (ID, STKL, VON_CM, BIS_CM) VALUES
  (1, N'1b', 15, 19),
  (2, N'2a', 20, 24),
  (3, N'2b', 25, 29),
  (4, N'3a', 30, 34),
  (5, N'3b', 35, 39),
  (6, N'4', 40, 49),
  (7, N'5', 50, 59),
  (8, N'6', 60, NULL);

INSERT INTO NUTZUNGSART (ID, NA, NAME) VALUES
  (1, N'EN', N'Endnutzung'),
  (2, N'VN', N'Vornutzung'),
  (3, N'ZE', N'Zufällige Ergebnisse'),
  (4, N'JD', N'Jungdurchforstung');

INSERT INTO KALAMITAET (ID, KA, NAME) VALUES
  (1, N'BK', N'Borkenkäfer'),
  (2, N'ST', N'Sturm'),
  (3, N'SN', N'Schneebruch'),
  (4, N'DÜ', N'Dürre');

INSERT INTO DSART (ID, NAME) VALUES
  (1, N'Bauholz'),
  (2, N'Furnierholz'),
  (3, N'Schwellenholz'),
  (4, N'Spanplattenholz'),
  (5, N'Scheitholz');

INSERT INTO RELTABLE (ID, RELTABLE_ID, KURZNAME, NAME) VALUES
  (1, 1, N'GAK', N'Bund-Länder-Förderung'),
  (2, 1, N'KUP', N'Klimaangepasstes Waldmanagement'),
  (3, 2, N'WSG', N'Wasserschutzgebiet'),
  (4, 2, N'FFH', N'Flora-Fauna-Habitat'),
  (5, 3, N'HARV', N'Harvester'),
  (6, 3, N'MMS', N'Motormanuell mit Seil'),
  (7, 4, N'EIG', N'Eigenregie'),
  (8, 4, N'UNT', N'Unternehmer'),
  (9, 5, N'FRÜH', N'Frühjahr'),
  (10, 5, N'HERB', N'Herbst'),
  (11, 6, N'LKW', N'ganzjährig befahrbar'),
  (12, 6, N'FROST', N'nur bei Frost befahrbar'),
  (13, 7, N'PEFC', N'PEFC-Audit'),
  (14, 7, N'FSC', N'FSC-Audit'),
  (15, 8, N'HANG', N'Hanglage über 30 %'),
  (16, 8, N'EBEN', N'Ebene'),
  (17, 9, N'ERH', N'Erholungswald'),
  (18, 9, N'SCHU', N'Schutzwald'),
  (19, 10, N'PRIO1', N'Dringend'),
  (20, 10, N'PRIO2', N'Normal');

INSERT INTO REVIER (ID, NUMMER, NAME, FLAECHE, ID_ACCESS_LEVELS) VALUES
  (1, 101, N'Ahornboden', 1240.50, 2),
  (2, 102, N'Buchenau', 986.25, 2),
  (3, 103, N'Eichgrund', 1512.00, 3),
  (4, 104, N'Höllental', 2034.75, 3),
  (5, 105, N'Kühbrunn', 745.30, 4),
  (6, 106, N'Rauher Stein', 1688.90, 4),
  (7, 107, N'Tannbach', 1325.10, 2),
  (8, 108, N'Wolfsschlucht', 890.00, 3);

INSERT INTO PRODUKT (ID, NAME, EINHEIT) VALUES
  (1, N'Holzernte', N'fm'),
  (2, N'Pflanzung', N'Stück'),
  (3, N'Jungwuchspflege', N'ha'),
  (4, N'Wegeunterhaltung', N'm'),
  (5, N'Zaunbau', N'm'),
  (6, N'Umweltbildung', N'h');

INSERT INTO BB_T_ABGANGSART (ID, NAME, ABGANG, UMSORTIERUNG) VALUES
  (1, N'Verkauf frei Waldstraße', 1, 0),
  (2, N'Deputat', 1, NULL),
  (3, N'Umsortierung', 0, 1),
  (4, N'Eigenverbrauch', 1, 0),
  (5, N'Schwund', 0, NULL);

INSERT INTO BB_T_AUFTRAGSTYP (ID, NAME, TYP_TAGA, TYP_AKA) VALUES
  (1, N'Zielvereinbarung', 1, 0),
  (2, N'Katalogauftrag', 0, 1),
  (3, N'Sonderauftrag', 0, 0);

INSERT INTO BB_T_AUFTRAGSSTATUS (ID, NAME, ID_BB_T_AUFTRAGSSTATUS_TO_MAP, ID_BB_T_AUFTRAGSSTATUS_FROM_MAP) VALUES
  (1, N'geplant', 2, NULL),
  (2, N'im Monatsplan', NULL, 3),
  (3, N'in Arbeit', NULL, NULL),
  (4, N'erledigt', NULL, NULL);

INSERT INTO RECHNUNGSLAUF (ID, VER_TYPE, NAME) VALUES
  (1, N'R', N'Verkauf'),
  (2, N'A1', N'Unternehmer Einschlag'),
  (3, N'A2', N'Unternehmer Rückung'),
  (4, N'A3', N'Waldbesitzer'),
  (5, N'A4', N'Transport'),
  (6, N'A5', N'Vermessung'),
  (7, N'A6', N'Vermittlung'),
  (8, N'A7', N'Lagergeld'),
  (9, N'A8', N'Sonstiges');

INSERT INTO WARENGRUPPE (ID, NAME) VALUES
  (1, N'Forstpflanzen'),
  (2, N'Schutzausrüstung'),
  (3, N'Werkzeug'),
  (4, N'Zaunmaterial'),
  (5, N'Betriebsstoffe'),
  (6, N'Wildbret');

INSERT INTO MASCHINE (ID, NAME, KENNZEICHEN) VALUES
  (1, N'Harvester 8-Rad', N'TÖL-H 801'),
  (2, N'Forwarder 14 t', N'TÖL-F 140'),
  (3, N'Schlepper mit Seilwinde', N'MB-S 231'),
  (4, N'Hacker', NULL),
  (5, N'Mulchgerät', NULL),
  (6, N'Pritschenwagen', N'TÖL-P 35'),
  (7, N'Geländewagen', N'MB-G 7'),
  (8, N'Rückezug', N'RO-R 612');

INSERT INTO WILDART (ID, NAME, HOCHWILD) VALUES
  (1, N'Rotwild', 1),
  (2, N'Rehwild', 0),
  (3, N'Schwarzwild', 1),
  (4, N'Gamswild', 1),
  (5, N'Feldhase', 0),
  (6, N'Fuchs', 0),
  (7, N'Stockente', 0),
  (8, N'Fasan', 0),
  (9, N'Dachs', 0);
GO

INSERT INTO USERS (ID, LOGIN, NAME, ID_ACCESS_LEVELS, ID_REVIER, LETZTE_ANMELDUNG, ANMELDUNGEN, STUNDENSATZ, AKTIV) VALUES
  (1, N'zentrale', N'Brigitte Köhler', 1, NULL, '20250314 08:05:00', 1843, 48.50, 1),
  (2, N'nord', N'Andreas Öttl', 2, 1, '20250313 16:40:00', 967, 42.00, 1),
  (3, N'süd', N'Jürgen Weiß', 3, 3, NULL, 0, NULL, 0);

INSERT INTO PERSONAL (ID, NUMMER, NAME, VORNAME, STRASSE, PLZ, ORT, ANGELEGT, GEBURTSDATUM, STUNDENSATZ, KUNDE, ARBEITER, LIEFERANT, MANDANTEN, SONSTIGER, WALDBESITZER, ANSPRECHPARTNER, ABRECH1, ABRECH2, ABRECH3, ABRECH4, ABRECH5, ABRECH6, ABRECH7, ABRECH8, ID_REVIER, ID_ACCESS_LEVELS) VALUES
  (1, 10001, N'Sägewerk Huber GmbH & Co. KG', NULL, N'Mühlweg 3', N'83646', N'Bad Tölz', '20120301', NULL, NULL, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 2),
  (2, 10002, N'O''Brien Holzhandel', NULL, N'Harbour Street 12', N'80331', N'München', '20150915', NULL, NULL, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, NULL, NULL),
  (3, 10003, N'Papierfabrik Isartal AG', NULL, N'Am Kanal 1', N'82515', N'Wolfratshausen', '20110110', NULL, NULL, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 2, 2),
  (4, 10004, N'Zimmerei Größl', NULL, N'Kirchplatz 7', N'83661', N'Lenggries', '20180522', NULL, NULL, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 3, 3),
  (5, 10005, N'Furnierwerk Spessart KG', NULL, N'Eichenallee 20', N'97816', N'Lohr am Main', '20140703', NULL, NULL, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 4, 3),
  (6, 10006, N'Biomassehof Oberland', NULL, N'Gewerbering 9', N'83607', N'Holzkirchen', '20190218', NULL, NULL, 1, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 5, 4),
  (7, 20001, N'Forsttechnik Bauer', NULL, N'Industriestraße 44', N'83022', N'Rosenheim', '20130606', NULL, NULL, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, NULL, NULL),
  (8, 20002, N'Baumschule Grünwald', NULL, N'Pflanzgarten 1', N'84028', N'Landshut', '20120419', NULL, NULL, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, NULL, NULL),
  (9, 20003, N'Spedition Achleitner', NULL, N'Fernstraße 100', N'83059', N'Kolbermoor', '20160801', NULL, NULL, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, NULL, NULL),
  (10, 30001, N'Forstbetriebsgemeinschaft Isarwinkel', NULL, N'Marktstraße 2', N'83646', N'Bad Tölz', '20100101', NULL, NULL, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, NULL, 1),
  (11, 40001, N'Freifrau von Höhenrain', N'Dorothea', N'Schloss 1', N'83620', N'Feldkirchen', '20100501', '19541203', NULL, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 3, 3),
  (12, 40002, N'Gemeinde Wackersberg', NULL, N'Bachstraße 8', N'83646', N'Wackersberg', '20100501', NULL, NULL, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 2),
  (13, 40003, N'Sixt-Hölzl', N'Korbinian', N'Hölzlhof', N'83676', N'Jachenau', '20110711', '19680214', NULL, 1, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 6, 4),
  (14, 50001, N'Lindner', N'Eva', N'Waldstraße 5', N'83646', N'Bad Tölz', '20170401', '19850619', 31.50, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2),
  (15, 60001, N'Eder', N'Josef', N'Am Anger 14', N'83661', N'Lenggries', '20150102', '19790830', 24.80, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7, 2),
  (16, 60002, N'D''Angelo', N'Marco', N'Bahnhofplatz 2', N'83646', N'Bad Tölz', '20160315', '19900112', 23.10, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 2),
  (17, 60003, N'Müller', N'Georg', N'Tannenweg 17', N'83674', N'Gaißach', '20120901', '19720505', 27.40, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7, 2),
  (18, 60004, N'Straßer', N'Änne', N'Leitenweg 9', N'83673', N'Bichl', '20180601', '19950921', 22.60, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 3),
  (19, 60005, N'Kloß', N'Heiner', NULL, NULL, NULL, '20200201', NULL, 22.60, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 3),
  (20, 60006, N'Öttl', N'Andreas', N'Dorfstraße 31', N'83671', N'Benediktbeuern', '20140401', '19811111', 33.00, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 5, 4);

INSERT INTO PA_GRUPPE (ID, ID_PERSONAL, NAME, ANGELEGT, MITGLIEDER, ANTEIL, AKTIV) VALUES
  (1, 15, N'Rotte Nord', '20180301', 4, 40.00, 1),
  (2, 17, N'Rotte Tannbach', '20150901', 5, 60.00, 1),
  (3, 17, N'Pflanztrupp', '20210315', 8, 25.50, 1),
  (4, 17, N'Rotte Sturmholz', '20070118', 6, NULL, 0),
  (5, 18, N'Zaunbautrupp', '20190501', 3, 100.00, 1),
  (6, 20, N'Wegewarte', '20160701', 2, 12.75, 0);

INSERT INTO BB_JAGDBEZIRKE (ID, NUMMER, NAME, PACHTBEGINN, FLAECHE, VERPACHTET, ID_REVIER, ID_ACCESS_LEVELS) VALUES
  (1, 1, N'Ahornboden Nord', '20190401', 412.50, 1, 1, 2),
  (2, 2, N'Buchenau', '20210401', 380.00, 1, 2, 2),
  (3, 3, N'Eichgrund', NULL, 655.25, 0, 3, 3),
  (4, 4, N'Höllental Sonnenseite', '20170401', 890.10, 1, 4, 3),
  (5, 5, N'Höllental Schattseite', NULL, 760.00, 0, 4, NULL),
  (6, 6, N'Kühbrunn', '20220401', 310.75, 1, 5, 4),
  (7, 7, N'Rauher Stein', '20160401', 1020.00, 1, 6, 4),
  (8, 8, N'Tannbach', NULL, 540.60, 0, 7, NULL);

INSERT INTO BB_HUNDE (ID, NAME, RASSE, WURFDATUM, EINSAETZE, SCHULTERHOEHE, BRAUCHBARKEIT, ID_FUEHRER) VALUES
  (1, N'Artus vom Tannbach', N'Bayerischer Gebirgsschweißhund', '20180512', 64, 48.5, 1, 17),
  (2, N'Bella', N'Deutsch-Drahthaar', '20190303', 41, 61.0, 1, 14),
  (3, N'Cora', N'Kleiner Münsterländer', '20200822', 23, 53.5, 1, 20),
  (4, N'Dax', N'Rauhaarteckel', '20210117', 18, NULL, 1, 15),
  (5, N'Flöckchen', N'Rauhaarteckel', '20231201', 0, 26.0, 0, 18),
  (6, N'Gerry O''Malley', N'Labrador Retriever', '20220609', 9, 57.0, 0, NULL);

INSERT INTO BB_T_OBJEKTE (ID, NUMMER, NAME, ERRICHTET, FLAECHE, DENKMALSCHUTZ, ID_REVIER, ID_ACCESS_LEVELS) VALUES
  (1, 1001, N'Forsthaus Tannbach', '18920501', 240.00, 1, 7, 2),
  (2, 1002, N'Gerätehalle Buchenau', '19781015', 680.00, 0, 2, 2),
  (3, 1003, N'Jagdhütte Höllental', '19350701', 54.50, 1, 4, 3),
  (4, 1004, N'Nasslager Kühbrunn', '20080301', 12500.00, 0, 5, 4),
  (5, 1005, N'Waldkindergarten Eichgrund', '20170901', 88.00, 0, 3, NULL),
  (6, 1006, N'Schlosskapelle', NULL, NULL, 1, 3, 3),
  (7, 1007, N'Wildkammer Rauher Stein', '20140610', 36.00, 0, 6, 4);

INSERT INTO BB_LAGER (ID, NUMMER, NAME, ERFASST, POLTER, BESTAND, AKTIV, ID_REVIER) VALUES
  (1, 1, N'Lagerplatz Bahnhof', '20110301', 24, 1830.500, 1, 1),
  (2, 2, N'Nasslager Kühbrunn', '20080315', 58, 9420.000, 1, 5),
  (3, 3, N'Wertholzplatz Eichgrund', '20130110', 112, 640.250, 1, 3),
  (4, 4, N'Brennholzhof', '20160905', 9, 310.000, 1, 7),
  (5, 5, N'Altes Trockenlager', '19990401', 0, NULL, 0, NULL);

INSERT INTO BB_TAKL01_KLR (ID, KONTO, BEZEICHNUNG, GUELTIG_AB, STUFE, SATZ, AKTIV, ACCESS_LEVELS) VALUES
  (1, N'4000', N'Holzernte', '20200101', 1, NULL, 1, 1),
  (2, N'4010', N'Holzernte motormanuell', '20200101', 2, 18.50, 1, 2),
  (3, N'4020', N'Holzernte vollmechanisiert', '20200101', 2, 12.80, 1, 2),
  (4, N'4100', N'Holzrückung', '20200101', 1, 9.40, 1, 3),
  (5, N'4200', N'Kulturbegründung', '20210101', 1, NULL, 1, 1),
  (6, N'4210', N'Pflanzung Laubholz', '20210101', 2, 1.85, 1, 3),
  (7, N'4220', N'Pflanzung Nadelholz', '20210101', 2, 1.10, 1, 4),
  (8, N'4300', N'Jungwuchspflege', '20200101', 1, 640.00, 1, 2),
  (9, N'4400', N'Wegeunterhaltung', '20200101', 1, 2.30, 1, 4),
  (10, N'4500', N'Jagdbetrieb', '20190401', 1, NULL, 1, 1),
  (11, N'4900', N'Sturmholz 2007', '20070118', 1, 21.00, 0, NULL);

INSERT INTO BB_TAKL02_KLR_BETRIEB (ID, ID_BB_TAKL01_KLR, BETRIEB, ID_ACCESS_LEVELS) VALUES
  (1, 1, N'Forstbetrieb Nord', 2),
  (2, 1, N'Forstbetrieb Süd', 3),
  (3, 2, N'Forstbetrieb Nord', 2),
  (4, 3, N'Forstbetrieb Nord', 2),
  (5, 4, N'Forstbetrieb Süd', 3),
  (6, 5, N'Zentrale', 1),
  (7, 6, N'Forstbetrieb Süd', 3),
  (8, 7, N'Forstbetrieb Ost', 4),
  (9, 8, N'Forstbetrieb Nord', 2),
  (10, 9, N'Forstbetrieb Ost', 4),
  (11, 10, N'Zentrale', 1);
GO
