#include "repository/schema.h"

namespace quillmarden {

// The capacity queries leave tables out that carry no field; the lists show them, so that none is lost.
const std::vector<QueryDef>& repositoryQueries() {
  static const std::vector<QueryDef> queries = {
      {"UNI_テーブル情報",
       R"sql(SELECT inf.テーブル名, inf.日本語名, inf.分類, inf.格納先, inf.ファイル種別, First(inf.概要) AS 概要, inf.作成間隔,
 inf.現在数 AS 設計件数, inf.現在保持 AS 設計保持履歴, inf.想定数 AS DB設定数, inf.想定保持 AS DB保持履歴,
 Sum(det.長さ) AS 長さの合計, 'Table' AS 種別, inf.システム名
 FROM MAS_TABLEINFO AS inf INNER JOIN MAS_TABLEDETAILES AS det ON inf.ID = det.ID
 WHERE inf.削除フラグ = 0
 GROUP BY inf.ID, inf.テーブル名, inf.日本語名, inf.分類, inf.格納先, inf.ファイル種別, inf.作成間隔,
 inf.現在数, inf.現在保持, inf.想定数, inf.想定保持, inf.システム名;)sql"},
      {"UNI_キー情報",
       R"sql(SELECT inf.テーブル名, inf.日本語名, inf.分類, inf.格納先, inf.ファイル種別, First(inf.概要) AS 概要, inf.作成間隔,
 inf.現在数 AS 設計件数, inf.現在保持 AS 設計保持履歴, inf.想定数 AS DB設定数, inf.想定保持 AS DB保持履歴,
 Sum(det.長さ) AS 長さの合計, 'PrimaryKey' AS 種別, inf.システム名
 FROM MAS_TABLEINFO AS inf INNER JOIN MAS_TABLEDETAILES AS det ON inf.ID = det.ID
 WHERE inf.削除フラグ = 0 AND det.KEY = -1
 GROUP BY inf.ID, inf.テーブル名, inf.日本語名, inf.分類, inf.格納先, inf.ファイル種別, inf.作成間隔,
 inf.現在数, inf.現在保持, inf.想定数, inf.想定保持, inf.システム名;)sql"},
      {"UNI_インデックス",
       R"sql(SELECT inf.テーブル名, idx.INDEX_NAME AS 日本語名, inf.分類, inf.格納先, inf.ファイル種別, First(inf.概要) AS 概要,
 inf.作成間隔, inf.現在数 AS 設計件数, inf.現在保持 AS 設計保持履歴, inf.想定数 AS DB設定数, inf.想定保持 AS DB保持履歴,
 Sum(det.長さ) AS 長さの合計, 'Index' AS 種別, inf.システム名
 FROM (MAS_TABLEINFO AS inf INNER JOIN MAS_INDEX AS idx ON inf.ID = idx.ID)
 INNER JOIN MAS_TABLEDETAILES AS det ON (idx.ID = det.ID) AND (idx.ROWNO = det.ROWNO)
 WHERE inf.削除フラグ = 0
 GROUP BY inf.ID, inf.テーブル名, idx.INDEX_NAME, inf.分類, inf.格納先, inf.ファイル種別, inf.作成間隔,
 inf.現在数, inf.現在保持, inf.想定数, inf.想定保持, inf.システム名;)sql"},
      {"Q_容量計算",
       R"sql(SELECT * FROM UNI_テーブル情報
 UNION ALL SELECT * FROM UNI_キー情報
 UNION ALL SELECT * FROM UNI_インデックス;)sql"},
      // The three queries do not carry the row-count definition, so it is found again by the table's name.
      {"出力_容量計算",
       R"sql(PARAMETERS SystemName Text;
SELECT q.テーブル名, q.日本語名, q.分類, q.格納先, q.ファイル種別, q.概要, q.作成間隔, q.設計件数, q.設計保持履歴,
 q.DB設定数, q.DB保持履歴, q.長さの合計, q.種別, q.システム名,
 IIf(q.種別 = 'table', q.DB設定数 * q.DB保持履歴 * (q.長さの合計 + 10), q.DB設定数 * q.DB保持履歴 * q.長さの合計) AS 容量,
 k.定義名, k.概要, k.件数
 FROM (Q_容量計算 AS q
 LEFT JOIN (SELECT inf.システム名, inf.テーブル名, First(inf.件数定義ID) AS 定義ID FROM MAS_TABLEINFO AS inf
 WHERE inf.削除フラグ = 0 GROUP BY inf.システム名, inf.テーブル名) AS t
 ON (q.システム名 = t.システム名) AND (q.テーブル名 = t.テーブル名))
 LEFT JOIN MAS_KENSU AS k ON t.定義ID = k.ID
 WHERE q.システム名 = [SystemName]
 ORDER BY q.テーブル名, q.種別 DESC;)sql"},
      {"出力_件数",
       R"sql(PARAMETERS paraSystem Text;
SELECT inf.システム名, inf.テーブル名, inf.日本語名, inf.分類, Sum(det.長さ) AS 長さの合計, inf.想定数, inf.想定保持,
 k.定義名 AS 件数定義
 FROM (MAS_TABLEINFO AS inf LEFT JOIN MAS_TABLEDETAILES AS det ON inf.ID = det.ID)
 LEFT JOIN MAS_KENSU AS k ON inf.件数定義ID = k.ID
 WHERE inf.削除フラグ = 0 AND inf.システム名 = [paraSystem]
 GROUP BY inf.ID, inf.システム名, inf.テーブル名, inf.日本語名, inf.分類, inf.想定数, inf.想定保持, k.定義名
 ORDER BY inf.テーブル名;)sql"},
      {"出力_テーブル一覧",
       R"sql(PARAMETERS SystemName Text;
SELECT inf.日本語名, inf.テーブル名, inf.分類, inf.概要, inf.ファイル種別
 FROM MAS_TABLEINFO AS inf
 WHERE inf.システム名 = [SystemName] AND inf.削除フラグ = 0
 ORDER BY inf.日本語名;)sql"},
      {"出力_テーブル一覧(項目あり)",
       R"sql(PARAMETERS SystemName Text;
SELECT inf.日本語名, inf.テーブル名, inf.分類, inf.概要, inf.ファイル種別, det.ROWNO, det.日本語名 AS 項目日本語名, det.項目名,
 det.KEY, det.型, det.整数桁数, det.少数桁数, det.長さ, det.Null値, det.備考
 FROM MAS_TABLEINFO AS inf LEFT JOIN MAS_TABLEDETAILES AS det ON inf.ID = det.ID
 WHERE inf.システム名 = [SystemName] AND inf.削除フラグ = 0
 ORDER BY inf.日本語名, det.ROWNO;)sql"},
      {"出力_テーブル参照一覧",
       R"sql(PARAMETERS [システム名] Text;
SELECT a.システム名 AS 参照先システム名, a.分類 AS 参照先分類, a.日本語名 AS 参照先日本語名, a.テーブル名 AS 参照先テーブル名,
 ad.日本語名 AS 参照先項目日本語名, ad.項目名 AS 参照先項目名, ad.型 AS 参照先型,
 '(' & ad.整数桁数 & ',' & ad.少数桁数 & ')' AS 参照先桁数,
 ref.参照区分, ref.FK,
 b.システム名 AS 参照元システム名, b.分類 AS 参照元分類, b.日本語名 AS 参照元日本語名, b.テーブル名 AS 参照元テーブル名,
 bd.日本語名 AS 参照元項目日本語名, bd.項目名 AS 参照元項目名, bd.型 AS 参照元型,
 '(' & bd.整数桁数 & ',' & bd.少数桁数 & ')' AS 参照元桁数
 FROM (((DAT_REFERENCE AS ref
 LEFT JOIN MAS_TABLEINFO AS a ON ref.ID = a.ID)
 LEFT JOIN MAS_TABLEDETAILES AS ad ON (ref.ID = ad.ID) AND (ref.ROWNO = ad.ROWNO))
 LEFT JOIN MAS_TABLEINFO AS b ON ref.ID_REF = b.ID)
 LEFT JOIN MAS_TABLEDETAILES AS bd ON (ref.ID_REF = bd.ID) AND (ref.ROWNO_REF = bd.ROWNO)
 WHERE ref.システム名 = [システム名]
 ORDER BY ref.ID, ref.ID_REF, ref.ROWNO;)sql"},
      {"Q_最小チェックポイント",
       R"sql(SELECT inf.システム名, Min(inf.チェックポイント日付) AS チェックポイント日付の最小
 FROM MAS_TABLEINFO AS inf
 WHERE inf.削除フラグ = 0
 GROUP BY inf.システム名;)sql"},
      {"出力_チェックポイント後の変更",
       R"sql(PARAMETERS SystemName Text;
SELECT inf.日本語名 AS テーブル日本語名, inf.テーブル名, det.ROWNO, det.日本語名, det.項目名, det.型, det.整数桁数, det.少数桁数,
 det.作成年月日, det.作成者, c.チェックポイント日付の最小
 FROM (MAS_TABLEINFO AS inf INNER JOIN MAS_TABLEDETAILES AS det ON inf.ID = det.ID)
 INNER JOIN Q_最小チェックポイント AS c ON inf.システム名 = c.システム名
 WHERE inf.システム名 = [SystemName] AND inf.削除フラグ = 0 AND det.作成年月日 > c.チェックポイント日付の最小
 ORDER BY inf.日本語名, det.ROWNO;)sql"},
      {"Q_SERCH_INFO",
       R"sql(  SELECT Max(ORA_SERCH_INFO.日付) AS 日付の最大, ORA_SERCH_INFO.システム名
  FROM ORA_SERCH_INFO
  GROUP BY ORA_SERCH_INFO.システム名;)sql"},
  };
  return queries;
}

}  // namespace quillmarden
