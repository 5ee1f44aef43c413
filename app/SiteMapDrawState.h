#pragma once

// What the crawl map's items need to know to draw themselves: below `overviewScale` the view
// shows its picture of the whole map and the items draw nothing; while that picture is made,
// they draw at any scale. A scale of 0 means no picture (a small map draws its items).
struct SiteMapDrawState {
    double overviewScale = 0.0;
    bool renderingOverview = false;

    bool overviewShown(double scale) const { return !renderingOverview && scale < overviewScale; }
};
