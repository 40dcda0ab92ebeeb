#include "query.h"

#include "database.h"
#include "fbapi.h"
#include "inputmessage.h"
#include "outputcolumns.h"
#include "transaction.h"

#include <ibase.h>

#include <map>
#include <optional>
#include <vector>

using namespace Firebird;

namespace tv {

// ---------------------------------------------------------------------- Impl

namespace {

const int kSegment = 32000;

} // namespace

struct Query::Impl {
    Database* db = nullptr;
    Transaction* tr = nullptr;
    int listener = 0;

    QString sql;
    QString converted;
    QStringList positions;
    std::map<QString, QVariant> params;
    bool readBlobs = true;
    bool rawRows = false;

    fb::Ref<IStatement> stmt;
    quint64 generation = 0;
    unsigned type = 0;
    fb::Ref<IMessageMetadata> outMeta;
    std::vector<unsigned char> outBuf;
    QStringList names;
    QVector<FieldInfo> infos;
    // The output layout, read once at prepare: asking the metadata object per
    // row and column costs more than the decoding itself on long lists.
    RowLayout layout;

    InputMessage input;

    fb::Ref<IResultSet> rs;
    bool isOpen = false;
    bool atEof = true;
    QVector<QVariant> row;
    int affected = 0;

    ~Impl() { release(); }

    void closeCursor()
    {
        if (!rs)
            return;
        try {
            fb::guard([&] {
                fb::Status st;
                rs->close(&st);
                rs.take(); // close() released it
            });
        } catch (const DatabaseError&) {
            rs.reset();
        }
    }

    void release()
    {
        closeCursor();
        input.reset();
        outMeta.reset();
        stmt.reset();
        isOpen = false;
        atEof = true;
    }

    void need() const
    {
        if (!db || !tr)
            throw DataSetError(QStringLiteral("La consulta no tiene base de datos o transacción"));
    }

    void prepare()
    {
        need();
        ITransaction* tra = tr->handleFor(*db);
        if (stmt && generation == db->generation())
            return;
        release();
        fb::guard([&] {
            fb::Status st;
            const QByteArray text = converted.toUtf8();
            stmt.reset(db->attachment()->prepare(&st, tra, 0, text.constData(), 1,
                                                 IStatement::PREPARE_PREFETCH_METADATA));
            generation = db->generation();
            type = stmt->getType(&st);
            input.reset(stmt->getInputMetadata(&st));
            outMeta.reset(stmt->getOutputMetadata(&st));
            std::vector<ColumnLayout> columns;
            for (const OutputColumn& c : describeOutput(st, outMeta.get())) {
                columns.push_back(c.layout);
                names.append(c.info.name);
                infos.append(c.info);
            }
            layout = RowLayout(std::move(columns));
            outBuf.assign(outMeta->getMessageLength(&st), 0);
        });
    }

    // Text blobs reach a UTF8 attachment as converted temporary copies, made
    // as each row is fetched and valid only in this transaction: their ids
    // are worth nothing later, so raw rows carry their contents. Binary blobs
    // (photographs) keep their stored ids and are read when asked for.
    std::vector<std::optional<QByteArray>> inlineBlobs;

    void decodeRow(fb::Status& st, ITransaction* tra)
    {
        if (rawRows) {
            inlineBlobs.assign(static_cast<size_t>(layout.count()), std::nullopt);
            for (int i = 0; i < layout.count(); ++i) {
                const ColumnLayout& c = layout.column(i);
                if (c.kind != ColumnKind::Blob || !c.textBlob)
                    continue;
                const QVariant v = layout.decode(outBuf.data(), i);
                if (v.typeId() == qMetaTypeId<BlobId>())
                    inlineBlobs[static_cast<size_t>(i)] =
                        readBlobContents(st, *db, tra, v.value<BlobId>()).toString().toUtf8();
            }
            return;
        }
        const int count = layout.count();
        row.resize(count);
        for (int i = 0; i < count; ++i) {
            QVariant v = layout.decode(outBuf.data(), i);
            if (readBlobs && v.typeId() == qMetaTypeId<BlobId>())
                v = readBlobContents(st, *db, tra, v.value<BlobId>());
            row[i] = std::move(v);
        }
    }

    static QVariant readBlobContents(fb::Status& st, Database& database, ITransaction* tra, const BlobId& blob)
    {
        QByteArray out;
        ISC_QUAD q;
        q.gds_quad_high = static_cast<ISC_LONG>(blob.high);
        q.gds_quad_low = blob.low;
        fb::Ref<IBlob> bl(database.attachment()->openBlob(&st, tra, &q, 0, nullptr));
        char chunk[kSegment];
        for (;;) {
            unsigned len = 0;
            const int r = bl->getSegment(&st, sizeof chunk, chunk, &len);
            if (r == IStatus::RESULT_OK || r == IStatus::RESULT_SEGMENT)
                out.append(chunk, static_cast<qsizetype>(len));
            else
                break;
        }
        bl->close(&st);
        bl.take();
        if (blob.text)
            return QString::fromUtf8(out);
        return out;
    }

    void fetch()
    {
        fb::guard([&] {
            fb::Status st;
            if (rs->fetchNext(&st, outBuf.data()) == IStatus::RESULT_OK) {
                atEof = false;
                decodeRow(st, tr->handleFor(*db));
            } else {
                atEof = true;
                closeCursor();
            }
        });
    }
};

// --------------------------------------------------------------------- Query

Query::Query() : d(std::make_unique<Impl>()) {}

Query::Query(Database& db, Transaction& tr, const QString& sql) : Query()
{
    setDatabase(db);
    setTransaction(tr);
    if (!sql.isEmpty())
        setSQL(sql);
}

Query::~Query()
{
    if (d->tr && d->listener)
        d->tr->removeEndListener(d->listener);
}

void Query::setDatabase(Database& db)
{
    if (d->db != &db) {
        d->release();
        d->db = &db;
    }
}

void Query::setTransaction(Transaction& tr)
{
    if (d->tr == &tr)
        return;
    if (d->tr && d->listener)
        d->tr->removeEndListener(d->listener);
    d->tr = &tr;
    // A hard commit ends the cursor; rows already read stay readable.
    d->listener = tr.addEndListener([impl = d.get()] {
        if (impl->rs) {
            impl->closeCursor();
            impl->atEof = true;
        }
    });
}

Database* Query::database() const
{
    return d->db;
}

Transaction* Query::transaction() const
{
    return d->tr;
}

void Query::setSQL(const QString& sql)
{
    if (sql == d->sql)
        return;
    d->release();
    d->sql = sql;
    d->positions.clear();
    d->converted = convertParameters(sql, &d->positions);
    std::map<QString, QVariant> kept;
    for (const QString& n : d->positions) {
        auto it = d->params.find(n);
        kept[n] = it == d->params.end() ? QVariant() : it->second;
    }
    d->params = std::move(kept);
    d->names.clear();
    d->infos.clear();
}

QString Query::sql() const
{
    return d->sql;
}

QStringList Query::paramNames() const
{
    QStringList out;
    for (const QString& n : d->positions)
        if (!out.contains(n))
            out.append(n);
    return out;
}

Param Query::paramByName(const QString& name)
{
    auto it = d->params.find(name.toUpper());
    if (it == d->params.end())
        throw DataSetError(QStringLiteral("Parameter '%1' not found").arg(name));
    return Param(&it->second);
}

bool Query::hasParam(const QString& name) const
{
    return d->params.count(name.toUpper()) > 0;
}

void Query::prepare()
{
    d->prepare();
}

Query::StatementType Query::statementType()
{
    d->prepare();
    switch (d->type) {
    case isc_info_sql_stmt_select:
    case isc_info_sql_stmt_select_for_upd:
        return StatementType::Select;
    case isc_info_sql_stmt_insert:
        return StatementType::Insert;
    case isc_info_sql_stmt_update:
        return StatementType::Update;
    case isc_info_sql_stmt_delete:
        return StatementType::Delete;
    case isc_info_sql_stmt_exec_procedure:
        return StatementType::Procedure;
    default:
        return StatementType::Other;
    }
}

void Query::setReadBlobs(bool read)
{
    d->readBlobs = read;
}

void Query::setRawRows(bool raw)
{
    d->rawRows = raw;
}

QByteArray Query::packedRow() const
{
    if (d->atEof || d->outBuf.empty())
        return {};
    return d->layout.pack(d->outBuf.data(), &d->inlineBlobs);
}

const RowLayout& Query::layout() const
{
    return d->layout;
}

void Query::open()
{
    close();
    d->prepare();
    fb::guard([&] {
        fb::Status st;
        ITransaction* tra = d->tr->handleFor(*d->db);
        std::vector<unsigned char> inBuf;
        IMessageMetadata* in = d->input.build(st, d->db->attachment(), tra, d->positions, d->params, inBuf);
        void* inData = inBuf.empty() ? nullptr : inBuf.data();
        if (d->type == isc_info_sql_stmt_select || d->type == isc_info_sql_stmt_select_for_upd) {
            d->rs.reset(d->stmt->openCursor(&st, tra, in, inData, d->outMeta.get(), 0));
            d->isOpen = true;
            d->fetch();
        } else {
            const bool hasOutput = !d->names.isEmpty();
            d->stmt->execute(&st, tra, in, inData, hasOutput ? d->outMeta.get() : nullptr,
                             hasOutput ? d->outBuf.data() : nullptr);
            d->isOpen = true;
            d->affected = static_cast<int>(d->stmt->getAffectedRecords(&st));
            if (!hasOutput) {
                d->atEof = true;
            } else {
                d->atEof = false;
                d->decodeRow(st, tra);
            }
        }
    });
}

void Query::exec()
{
    close();
    d->prepare();
    if (d->type == isc_info_sql_stmt_select || d->type == isc_info_sql_stmt_select_for_upd) {
        open();
        close();
        return;
    }
    open();
    d->isOpen = false;
}

void Query::close()
{
    d->closeCursor();
    d->isOpen = false;
    d->atEof = true;
    d->row.clear();
}

bool Query::isOpen() const
{
    return d->isOpen;
}

bool Query::eof() const
{
    return d->atEof;
}

void Query::next()
{
    if (d->atEof)
        return;
    if (!d->rs) {
        d->atEof = true;
        return;
    }
    d->fetch();
}

int Query::rowsAffected() const
{
    return d->affected;
}

int Query::fieldCount() const
{
    return d->names.size();
}

Field Query::field(int i) const
{
    return Field(d->names.value(i), d->atEof || i >= d->row.size() ? QVariant() : d->row[i]);
}

int Query::fieldIndex(const QString& name) const
{
    return d->names.indexOf(name.toUpper());
}

Field Query::fieldByName(const QString& name) const
{
    const int i = fieldIndex(name);
    if (i < 0)
        throw DataSetError(QStringLiteral("Field '%1' not found").arg(name));
    return field(i);
}

QStringList Query::fieldNames() const
{
    return d->names;
}

FieldInfo Query::fieldInfo(int i) const
{
    return d->infos.value(i);
}

QVector<FieldInfo> Query::fieldInfos() const
{
    return d->infos;
}

QVector<QVariant> Query::values() const
{
    return d->row;
}

void Query::unprepare()
{
    d->release();
}

qlonglong Query::genId(Database& db, Transaction& tr, const QString& generator, int increment)
{
    Query q(db, tr, QString::asprintf("SELECT GEN_ID(%s, %d) FROM RDB$DATABASE", generator.toUtf8().constData(),
                                      increment));
    q.open();
    return q.field(0).asInt64();
}

void Query::execute(Database& db, Transaction& tr, const QString& sql)
{
    Query q(db, tr, sql);
    q.exec();
}

QVariant Query::scalar(Database& db, Transaction& tr, const QString& sql)
{
    Query q(db, tr, sql);
    q.open();
    return q.eof() ? QVariant() : q.field(0).value();
}

QVariant Query::readBlob(Database& db, Transaction& tr, const BlobId& id)
{
    ITransaction* tra = tr.handleFor(db);
    return fb::guard([&] {
        fb::Status st;
        return Impl::readBlobContents(st, db, tra, id);
    });
}

} // namespace tv
