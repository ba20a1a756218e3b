#include <tessel/core/Error.h>

namespace tessel {

std::string runtimeErrorText(int32_t number) {
  switch (number) {
    case 3: return "Return ohne GoSub";
    case 5: return "Unzulässiger Prozeduraufruf oder ungültiges Argument";
    case 6: return "Überlauf";
    case 7: return "Nicht genügend Speicher";
    case 9: return "Index außerhalb des gültigen Bereichs";
    case 10: return "Datenfeld ist unveränderlich oder momentan gesperrt";
    case 11: return "Division durch Null";
    case 13: return "Typen unverträglich";
    case 14: return "Nicht genügend Zeichenfolgenspeicher";
    case 28: return "Nicht genügend Stapelspeicher";
    case 51: return "Interner Fehler";
    case 52: return "Dateiname oder -nummer falsch";
    case 53: return "Datei nicht gefunden";
    case 54: return "Dateimodus falsch";
    case 55: return "Datei bereits geöffnet";
    case 57: return "Geräte-E/A-Fehler";
    case 58: return "Datei existiert bereits";
    case 61: return "Datenträger voll";
    case 62: return "Einlesen hinter Dateiende";
    case 67: return "Zu viele Dateien";
    case 68: return "Gerät nicht verfügbar";
    case 70: return "Zugriff verweigert";
    case 71: return "Datenträger nicht bereit";
    case 75: return "Fehler beim Zugriff auf Pfad/Datei";
    case 76: return "Pfad nicht gefunden";
    case 91: return "Objektvariable oder With-Blockvariable nicht festgelegt";
    case 94: return "Unzulässige Verwendung von Null";
    case 380: return "Unzulässiger Eigenschaftswert";
    case 400: return "Formular bereits angezeigt; kann nicht modal angezeigt werden";
    case 424: return "Objekt erforderlich";
    case 429: return "Objekt kann nicht erstellt werden";
    case 438: return "Objekt unterstützt diese Eigenschaft oder Methode nicht";
    case 440: return "Automatisierungsfehler";
    case 448: return "Benanntes Argument nicht gefunden";
    case 449: return "Argument ist nicht optional";
    case 450: return "Falsche Anzahl an Argumenten oder ungültige Zuweisung zu einer Eigenschaft";
    case 458: return "Variable verwendet einen nicht unterstützten Automatisierungstyp";
    case 480: return "AutoRedraw-Bild kann nicht erstellt werden";
    case 481: return "Ungültiges Bild";
    default: return "Anwendungs- oder objektdefinierter Fehler";
  }
}

void raise(int32_t number) { throw Error(number, runtimeErrorText(number)); }
void raise(int32_t number, std::string description) { throw Error(number, std::move(description)); }

}  // namespace tessel
