#pragma once

// The input message of a statement, built from its named parameters' values;
// for Query, not part of core's interface. Not thread-safe.

#include "fbapi.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>
#include <vector>

namespace tv {

class InputMessage {
public:
    // The statement's own input metadata, at each prepare.
    void reset(Firebird::IMessageMetadata* meta = nullptr)
    {
        mMsg.reset();
        mShapes.clear();
        mMeta.reset(meta);
    }

    // Typed after the values (the engine converts), except blobs: an unread
    // one goes back by its id, a long new one is written first and passed by
    // id. The coerced metadata is kept while the values' shapes stay the
    // same (every row of one apply, as a rule).
    Firebird::IMessageMetadata* build(fb::Status& st, Firebird::IAttachment* att, Firebird::ITransaction* tra,
                                      const QStringList& positions, std::map<QString, QVariant>& params,
                                      std::vector<unsigned char>& buf);

private:
    struct ParamShape {
        unsigned type;
        unsigned length;
        unsigned charSet;
        bool operator==(const ParamShape&) const = default;
    };

    static QByteArray textOf(const QVariant& v);
    static ISC_QUAD writeBlob(fb::Status& st, Firebird::IAttachment* att, Firebird::ITransaction* tra,
                              const QByteArray& bytes, bool text);

    fb::Ref<Firebird::IMessageMetadata> mMeta;
    fb::Ref<Firebird::IMessageMetadata> mMsg;
    std::vector<ParamShape> mShapes;
};

} // namespace tv
