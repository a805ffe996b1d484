#pragma once

#include "host/KVString.h"

// One row of a settings list. One type serves two kinds of row: a field row of the .cfa
// (field name, attribute, search property, show flag) and a block or symbol row of the .cfb or
// .cfc (block name or symbol key, insertion point, angle). A row of one kind leaves the other
// kind's texts empty.
class CECampoCfg final
{
public:
    // A field row; the block texts start empty.
    CECampoCfg(const KVString& fieldName, const KVString& attribute, const KVString& search,
               bool show);
    // A block or symbol row; the field texts start empty and `show` is false (no one reads it).
    CECampoCfg(const KVString& blockName, const KVString& position, const KVString& angle);

    KVString fieldName() const { return m_fieldName; }
    KVString attribute() const { return m_attribute; }
    // The search property exactly as read: it stays a text, unlike `show`.
    KVString search() const { return m_search; }
    bool show() const { return m_show; }
    KVString blockName() const { return m_blockName; }

    // The settings writer stores an empty cell as one blank; these two read that placeholder
    // as the default value. Any other text, the empty text included, comes back as stored.
    KVString position() const;
    KVString angle() const;

    // The point and angle exactly as stored, without the defaults.
    KVString storedPosition() const { return m_position; }
    KVString storedAngle() const { return m_angle; }

private:
    KVString m_fieldName;
    KVString m_attribute;
    KVString m_search;
    bool m_show = false;
    KVString m_blockName;
    KVString m_position;
    KVString m_angle;
};
