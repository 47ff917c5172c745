#include "panels/controls/paneltexts.h"

#include "messages/label.h"

QString methodText()
{
    return withColon(labelText({"MESS_CALC_METHODE", "Méthode de calcul"}));
}

QString edgesText()
{
    return withColon(
        labelText({"MESS_CALC_BORD_EXPL",
                   "Autoriser le calcul sur les bords de l’image et à proximité des valeurs NoData"}));
}
